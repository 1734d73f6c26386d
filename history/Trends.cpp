#include "history/History.h"
#include "history/store/RunRows.h"
#include "history/store/Statement.h"
#include "history/store/Store.h"

namespace history {
namespace {

/// A row for each test, measurement and run, those of one series together and the oldest run first.
constexpr const char* kQuery =
    "WITH matching(run, test, name) AS ("
    "SELECT run, test, name FROM tests WHERE name = ?1 UNION "
    "SELECT run, test, name FROM tests WHERE service = ?1) "
    "SELECT matching.name, measurements.name, part, unit, runs.id, runs.started, count(*), "
    "avg(measurements.number), min(measurements.number), max(measurements.number), "
    "max(minimum), min(maximum) "
    "FROM matching JOIN runs ON runs.number = matching.run "
    "JOIN measurements ON measurements.run = matching.run AND measurements.test = matching.test "
    "WHERE measurements.number IS NOT NULL AND (?2 = '' OR measurements.name = ?2) "
    "AND runs.id IN (SELECT id FROM runs ORDER BY id DESC LIMIT ?3) "
    "GROUP BY matching.name, measurements.name, part, unit, runs.id "
    "ORDER BY matching.name, measurements.name, part, unit, runs.id";

bool isOf(const Trend& trend, const Statement& row) {
  return row.bytes(0) == trend.test && row.bytes(1) == trend.name && row.bytes(2) == trend.part &&
         row.bytes(3) == trend.unit;
}

std::optional<double> limitIn(const Statement& row, int column) {
  return row.isNull(column) ? std::nullopt : std::optional<double>(row.real(column));
}

}  // namespace

std::vector<TestName> History::tests() const {
  Statement rows(m_store->database, "SELECT name, max(service) FROM tests GROUP BY name");
  std::vector<TestName> names;
  while (rows.step()) names.push_back({rows.text(0), rows.text(1)});
  return names;
}

std::vector<Trend> History::trend(const std::string& test, const std::string& measurement,
                                  std::size_t most) const {
  Statement rows(m_store->database, kQuery);
  rows.bind(1, std::string_view(test)).bind(2, std::string_view(measurement));
  rows.bind(3, std::uint64_t{most});
  std::vector<Trend> trends;
  while (rows.step()) {
    if (trends.empty() || !isOf(trends.back(), rows)) {
      trends.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3), {}, {}, {}});
    }
    Trend& trend = trends.back();
    trend.minimum = limitIn(rows, 10);
    trend.maximum = limitIn(rows, 11);
    trend.points.push_back({rows.text(4), timeOf(rows.integer(5)), rows.count(6), rows.real(7),
                            rows.real(8), rows.real(9)});
  }
  return trends;
}

}  // namespace history
