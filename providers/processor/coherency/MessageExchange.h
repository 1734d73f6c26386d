#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "providers/processor/topology/Threads.h"

namespace providers {

/// A word that arrived with other content than it was sent with.
struct WrongWord {
  unsigned reader = 0;  ///< the CPU where it arrived
  std::size_t word = 0;
  std::uint64_t expected = 0;
  std::uint64_t found = 0;
};

/// What every word passes through on its way from memory to its check: the place where a test can
/// put a fault in. Safe to use from any thread.
class MessageTap {
 public:
  virtual ~MessageTap() = default;
  virtual std::uint64_t pass(unsigned reader, std::uint64_t word) const {
    static_cast<void>(reader);
    return word;
  }
};

/// What two CPUs found when they sent messages to each other through memory.
struct ExchangeResult {
  bool started = true;         ///< there was a thread for the second one
  bool bound = false;          ///< both threads ran where they were to run
  std::uint64_t messages = 0;  ///< that arrived and were looked at
  std::optional<WrongWord> wrong;
};

constexpr std::size_t kMessageWords = 32;  // a message spans several cache lines

/// Lets two threads, the calling one and one of `start`, bound to the two CPUs by `bind`, hand a
/// message to and fro, checking its content each time: what one CPU has written, the other has to
/// see. Ends after `exchanges` round trips, at the first wrong word, or when `goesOn`, which both
/// threads ask, says no.
ExchangeResult exchangeMessages(unsigned cpu1, unsigned cpu2, std::uint64_t exchanges,
                                const std::function<bool(unsigned)>& bind,
                                const std::function<bool()>& goesOn, const MessageTap& tap,
                                const StartThread& start = startThread);

}  // namespace providers
