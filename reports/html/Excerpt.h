#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "engine/events/Event.h"

namespace reports::html {

struct Line {
  engine::Time time;
  int kind = 0;  ///< the stream, or the level
  std::string text;
};

/// The first and the last lines of what may be very many.
class Excerpt {
 public:
  /// Keeps `lines` of each end at most.
  explicit Excerpt(std::size_t lines) : m_lines(lines) {}

  void add(Line line);

  bool isEmpty() const { return m_first.empty(); }
  const std::vector<Line>& first() const { return m_first; }
  const std::deque<Line>& last() const { return m_last; }

  /// How many lines came between the two.
  std::uint64_t leftOut() const { return m_leftOut; }

  /// All that came.
  std::uint64_t count() const { return m_first.size() + m_leftOut + m_last.size(); }

  /// What it takes of the memory.
  std::size_t bytes() const { return m_bytes; }

 private:
  std::size_t m_lines;
  std::vector<Line> m_first;
  std::deque<Line> m_last;
  std::uint64_t m_leftOut = 0;
  std::size_t m_bytes = 0;
};

}  // namespace reports::html
