#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "engine/events/Event.h"
#include "host/options/Options.h"

/// What the display says of events, as plain text that is not yet made safe.
namespace host {

/// The verdict at that level: "(Pass)", "Pass - what the test says of it", "Pass".
std::string verdictText(const engine::Ended& end, Level level);

/// The verdict in one word.
std::string verdictWord(const engine::Ended& end);

/// What is told only where everything is; empty where there is nothing of that kind to tell.
std::string detailText(const engine::Body& body);

/// "fault: DIMM B1: 4 bits do not keep a 1".
std::string findingText(const engine::Diagnosis& finding);

/// Why something could not be done, with the provider where one is known.
std::string errorText(const engine::Error& error);

/// How many tests ended how.
class Summary {
 public:
  void add(engine::Outcome outcome) { ++m_counts[static_cast<std::size_t>(outcome)]; }
  std::uint64_t total() const;

  /// "3 tests: 1 passed, 1 failed, 1 without a verdict"; those that were skipped behind them, where
  /// there are any.
  std::string text() const;

 private:
  std::uint64_t count(engine::Outcome outcome) const {
    return m_counts[static_cast<std::size_t>(outcome)];
  }

  std::array<std::uint64_t, 7> m_counts{};
};

}  // namespace host
