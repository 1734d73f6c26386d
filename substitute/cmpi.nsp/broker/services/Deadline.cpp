#include "substitute/cmpi.nsp/broker/services/Deadline.h"

#include <algorithm>
#include <limits>

namespace cmpinsp::broker {

using Clock = std::chrono::system_clock;

/// The clock counts in so small parts that what providers take for "for ever" is beyond its range.
/// Half of that is more than a century.
Clock::time_point timeAfter(std::int64_t seconds, std::int64_t nanoseconds) {
  constexpr std::int64_t kSecondsAtMost =
      std::chrono::duration_cast<std::chrono::seconds>(Clock::duration::max()).count() / 2;
  constexpr std::int64_t kNanosecondsAtMost = std::numeric_limits<std::int64_t>::max() / 2;
  seconds = std::clamp<std::int64_t>(seconds, 0, kSecondsAtMost);
  nanoseconds = std::clamp<std::int64_t>(nanoseconds, 0, kNanosecondsAtMost);
  return Clock::time_point(std::chrono::seconds(seconds) +
                           std::chrono::microseconds(nanoseconds / 1000));
}

}  // namespace cmpinsp::broker
