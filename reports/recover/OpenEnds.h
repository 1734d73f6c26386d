#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "engine/events/Event.h"

namespace reports {

/// Follows a run's events, and knows what closes it wherever they end: for each test that is open
/// an error and an end, then an error and an end of the run.
class OpenEnds {
 public:
  void take(const engine::Event& event);

  /// How many tests have not ended; none where the run has.
  std::uint64_t open() const { return m_hasEnded ? 0 : m_open.size(); }

  /// Events with the time of the last one, that go on with its numbers; none where the run has
  /// ended.
  std::vector<engine::Event> closing() const;

 private:
  std::uint64_t m_next = 0;
  engine::Time m_time;
  std::set<std::uint64_t> m_open;
  bool m_hasEnded = false;
  bool m_hasFailure = false;
};

}  // namespace reports
