#include <ctime>

#include "platform/Platform.h"
#include "platform/ProgramPause.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <chrono>
#include <thread>
#endif

namespace diagsrunner::platform {

#if defined(_WIN32)

namespace {

using Pause = void (*)(unsigned int);

Pause programPause() {
  FARPROC const found = GetProcAddress(GetModuleHandleW(nullptr), "diagsrunner_pause");
  return reinterpret_cast<Pause>(reinterpret_cast<void*>(found));
}

}  // namespace

void sleepMilliseconds(unsigned int milliseconds) {
  static const Pause pause = programPause();
  if (pause != nullptr) {
    pause(milliseconds);
  } else {
    Sleep(milliseconds);
  }
}

std::int64_t currentTime() { return _time64(nullptr); }

double secondsBetween(std::int64_t later, std::int64_t earlier) {
  return _difftime64(later, earlier);
}

#else

// Null where the program has none.
#pragma weak diagsrunner_pause

void sleepMilliseconds(unsigned int milliseconds) {
  if (&diagsrunner_pause != nullptr) {
    diagsrunner_pause(milliseconds);
    return;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::int64_t currentTime() { return static_cast<std::int64_t>(std::time(nullptr)); }

double secondsBetween(std::int64_t later, std::int64_t earlier) {
  return std::difftime(static_cast<std::time_t>(later), static_cast<std::time_t>(earlier));
}

#endif

}  // namespace diagsrunner::platform
