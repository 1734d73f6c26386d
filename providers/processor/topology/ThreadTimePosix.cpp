#include <ctime>

#include "providers/processor/topology/ThreadTime.h"

namespace providers {

double threadSeconds() {
  constexpr double kNanoseconds = 1e9;
  timespec time = {};
  if (clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time) != 0) return 0;
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / kNanoseconds;
}

}  // namespace providers
