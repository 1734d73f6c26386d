#pragma once

/// Marks what the diagsrunner library exports. The library's own build defines
/// `DIAGSRUNNER_BUILD`; code that compiles its sources straight into a program (the unit tests)
/// defines `DIAGSRUNNER_STATIC`.

#if defined(DIAGSRUNNER_STATIC)
#define DIAGSRUNNER_API
#elif defined(_WIN32)
#if defined(DIAGSRUNNER_BUILD)
#define DIAGSRUNNER_API __declspec(dllexport)
#elif defined(_MSC_VER)
#define DIAGSRUNNER_API __declspec(dllimport)
#else
#define DIAGSRUNNER_API  // gcc needs no mark to link to a DLL
#endif
#else
#define DIAGSRUNNER_API __attribute__((visibility("default")))
#endif
