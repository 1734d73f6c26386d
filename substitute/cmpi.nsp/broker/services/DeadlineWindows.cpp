#include <cstring>

#include "substitute/cmpi.nsp/broker/services/Deadline.h"

namespace cmpinsp::broker {

using Clock = std::chrono::system_clock;

namespace {

bool isWithinADay(std::int32_t seconds) {
  const std::int64_t apart = std::int64_t{seconds} - Clock::to_time_t(Clock::now());
  return apart > -86400 && apart < 86400;
}

}  // namespace

/// There are two layouts, 32-bit seconds and nanoseconds or 64-bit seconds and more behind, and
/// nothing tells which one a provider was built with: a second word that is not zero is taken for
/// nanoseconds if it can be that, since 64-bit seconds that need it are far off. Of a time of these
/// days it may be more than a second's: providers add to it without carrying over.
Clock::time_point deadlineIn(const void* wait) {
  std::int32_t words[2];
  std::memcpy(words, wait, sizeof words);
  const bool isNanoseconds = words[1] >= 0 && (words[1] < 1'000'000'000 || isWithinADay(words[0]));
  if (isNanoseconds) return timeAfter(words[0], words[1]);
  std::int64_t seconds = 0;
  std::memcpy(&seconds, wait, sizeof seconds);
  return timeAfter(seconds, 0);
}

}  // namespace cmpinsp::broker
