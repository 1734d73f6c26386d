#include <ctime>

#include "platform/Platform.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <chrono>
#include <thread>
#endif

namespace diagsrunner::platform {

#if defined(_WIN32)

void sleepMilliseconds(unsigned int milliseconds) { Sleep(milliseconds); }

std::int64_t currentTime() { return _time64(nullptr); }

double secondsBetween(std::int64_t later, std::int64_t earlier) {
  return _difftime64(later, earlier);
}

#else

void sleepMilliseconds(unsigned int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::int64_t currentTime() { return static_cast<std::int64_t>(std::time(nullptr)); }

double secondsBetween(std::int64_t later, std::int64_t earlier) {
  return std::difftime(static_cast<std::time_t>(later), static_cast<std::time_t>(earlier));
}

#endif

}  // namespace diagsrunner::platform
