#pragma once

/// Marks what the framework's three libraries export.
///
/// A library that is being built defines its own `..._BUILD` macro; code that compiles a library's
/// sources straight into a program (the unit tests) defines `NZELVOR20_STATIC`.
///
/// With gcc, what is not marked as imported links to a DLL as well as to an object file. The unit
/// tests thus link the very objects that the DLLs are made of.

#if defined(NZELVOR20_STATIC)
#define NZELVOR20_EXPORT
#define NZELVOR20_IMPORT
#elif defined(_WIN32)
#define NZELVOR20_EXPORT __declspec(dllexport)
#if defined(_MSC_VER)
#define NZELVOR20_IMPORT __declspec(dllimport)
#else
#define NZELVOR20_IMPORT
#endif
#else
#define NZELVOR20_EXPORT __attribute__((visibility("default")))
#define NZELVOR20_IMPORT __attribute__((visibility("default")))
#endif

#if defined(VORCORE_BUILD)
#define VORCORE_API NZELVOR20_EXPORT
#else
#define VORCORE_API NZELVOR20_IMPORT
#endif

#if defined(CMPI_NSP_BUILD)
#define CMPI_NSP_API NZELVOR20_EXPORT
#else
#define CMPI_NSP_API NZELVOR20_IMPORT
#endif

#if defined(KFRXMLPARSER_BUILD)
#define KFRXMLPARSER_API NZELVOR20_EXPORT
#else
#define KFRXMLPARSER_API NZELVOR20_IMPORT
#endif

/// Interfaces that live in headers alone: their type information must be the same everywhere, so
/// that downcasts and exception handlers work across the libraries.
#if defined(_WIN32)
#define NZELVOR20_INTERFACE
#else
#define NZELVOR20_INTERFACE __attribute__((visibility("default")))
#endif

/// A class within an exported one that is no business of others.
#if defined(_WIN32)
#define NZELVOR20_INTERNAL
#else
#define NZELVOR20_INTERNAL __attribute__((visibility("hidden")))
#endif
