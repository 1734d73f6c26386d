#include <cstring>
#include <ctime>

#include "substitute/cmpi.nsp/broker/services/Deadline.h"

namespace cmpinsp::broker {

std::chrono::system_clock::time_point deadlineIn(const void* wait) {
  struct timespec time;
  std::memcpy(&time, wait, sizeof time);
  return timeAfter(time.tv_sec, time.tv_nsec);
}

}  // namespace cmpinsp::broker
