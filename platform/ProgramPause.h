#pragma once

/// Where a program defines and exports this function, the runner makes its pauses by it, and the
/// program can end them early; everywhere else they are the system's sleep. No library is to export
/// one, and none of ours does. Called on the thread that is to pause; may throw nothing.
#if defined(_WIN32)
extern "C" __declspec(dllexport) void diagsrunner_pause(unsigned int milliseconds);
#else
extern "C" __attribute__((visibility("default"))) void diagsrunner_pause(unsigned int milliseconds);
#endif
