#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "engine/events/EventSink.h"
#include "host/Options.h"

namespace host {

/// A run as lines: the tests and their verdicts on standard output, why one has none on standard
/// error.
class RunDisplay : public engine::EventSink {
 public:
  /// Each verdict at `level`, and its remark.
  explicit RunDisplay(Level level) : m_levels({level}), m_namesLevels(false) {}
  /// Each verdict at these levels, with the level's name in front.
  explicit RunDisplay(std::vector<Level> levels)
      : m_levels(std::move(levels)), m_namesLevels(true) {}

  void take(const engine::Event& event) override;

 private:
  void showVerdict(const engine::Ended& ended) const;
  void showLevel(Level level, const engine::Ended& ended) const;

  std::vector<Level> m_levels;
  bool m_namesLevels;
  std::map<std::uint64_t, std::string> m_names;
  std::map<std::uint64_t, std::string> m_errors;
};

}  // namespace host
