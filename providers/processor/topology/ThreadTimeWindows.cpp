#include <windows.h>

#include "providers/processor/topology/ThreadTime.h"

namespace providers {

namespace {

double secondsOf(const FILETIME& time) {
  constexpr double kTicks = 1e7;  // a second
  return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 +
          static_cast<double>(time.dwLowDateTime)) /
         kTicks;
}

}  // namespace

double threadSeconds() {
  FILETIME created, ended, kernel, user;
  if (!GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user)) return 0;
  return secondsOf(kernel) + secondsOf(user);
}

}  // namespace providers
