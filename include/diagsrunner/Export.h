#pragma once

/// Marks what the diagsrunner library exports. The library's own build defines
/// `DIAGSRUNNER_BUILD`; code that compiles its sources straight into a program (the unit tests)
/// defines `DIAGSRUNNER_STATIC`.

#if defined(DIAGSRUNNER_STATIC)
#define DIAGSRUNNER_API
#elif defined(_WIN32)
#if defined(DIAGSRUNNER_BUILD)
#define DIAGSRUNNER_API __declspec(dllexport)
#else
#define DIAGSRUNNER_API __declspec(dllimport)
#endif
#else
#define DIAGSRUNNER_API __attribute__((visibility("default")))
#endif
