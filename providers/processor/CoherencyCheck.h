#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "providers/processor/Operations.h"

namespace providers {

/// What two CPUs found when they sent messages to each other through memory.
struct CoherencyResult {
  bool bound = false;             ///< both threads ran where they were to run
  std::uint64_t messages = 0;     ///< that arrived and were looked at
  std::optional<Mismatch> wrong;  ///< the first message that arrived with other content
};

/// Lets two threads, bound to the two CPUs by `bind`, hand a message to and fro, checking its
/// content each time: what one CPU has written, the other has to see. Ends after `exchanges` round
/// trips, or when `goesOn` says no.
CoherencyResult checkCoherency(unsigned cpu1, unsigned cpu2, std::uint64_t exchanges,
                               const std::function<bool(unsigned)>& bind,
                               const std::function<bool()>& goesOn, ResultTap& tap);

}  // namespace providers
