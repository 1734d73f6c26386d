#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "engine/events/Event.h"

namespace reports::html {

/// What ran when: a row for each test identifier, a bar for each of its runs. Where a test ran very
/// often, neighbours become one bar, which has the worst of their outcomes.
class Timeline {
 public:
  struct Bar {
    engine::Time from;
    engine::Time to;
    engine::Outcome outcome = engine::Outcome::kPassed;
  };
  struct Row {
    std::string name;     ///< the test identifier
    std::string service;  ///< what a reader calls it
    std::string where;
    std::uint64_t runs = 0;
    std::vector<Bar> bars;
  };

  /// Keeps that many rows.
  explicit Timeline(std::size_t rows) : m_limit(rows) {}

  void add(const engine::TestStarted& test, const Bar& bar);

  const std::vector<Row>& rows() const { return m_rows; }

  /// Runs of tests that had no row any more.
  std::uint64_t leftOut() const { return m_leftOut; }

 private:
  std::size_t m_limit;
  std::vector<Row> m_rows;
  std::unordered_map<std::string, std::size_t> m_places;
  std::uint64_t m_leftOut = 0;
};

}  // namespace reports::html
