#include "history/store/RunRows.h"

#include <algorithm>
#include <limits>

#include "engine/events/EventNames.h"
#include "history/HistoryError.h"
#include "text/SafeText.h"

namespace history {
namespace {

constexpr const char* kColumns =
    "SELECT number, id, started, ended, outcome, host, version, command, passed, warned, failed, "
    "unfinished, skipped, bytes, left_out FROM runs ";

std::string queryOf(const RunFilter& filter) {
  std::string conditions;
  const auto add = [&](const char* condition) {
    conditions += (conditions.empty() ? "WHERE " : " AND ") + std::string(condition);
  };
  if (filter.since) add("started >= ?1");
  if (filter.until) add("started <= ?2");
  if (filter.outcome) add("outcome = ?3");
  if (!filter.test.empty()) {
    add("number IN (SELECT run FROM tests WHERE name = ?4 UNION SELECT run FROM tests WHERE "
        "service = "
        "?4)");
  }
  return kColumns + conditions + " ORDER BY id DESC LIMIT ?5";
}

RunState stateOf(const Store& store, std::int64_t number, bool hasEnded) {
  if (hasEnded) return RunState::kEnded;
  return store.locks.isTaken(number) ? RunState::kRunning : RunState::kCutOff;
}

RunRecord recordIn(const Store& store, const Statement& row) {
  RunRecord record;
  record.id = row.text(1);
  record.started = timeOf(row.integer(2));
  if (!row.isNull(3)) record.ended = timeOf(row.integer(3));
  record.state = stateOf(store, row.integer(0), record.ended.has_value());
  record.outcome = outcomeIn(store.database, row, 4);
  record.host = row.text(5);
  record.version = row.text(6);
  record.command = row.text(7);
  record.tests = {row.count(8), row.count(9), row.count(10), row.count(11), row.count(12)};
  record.bytes = row.count(13);
  record.leftOut = row.count(14);
  return record;
}

}  // namespace

RunRows::RunRows(Store& store, const RunFilter& filter, std::size_t most)
    : m_store(store), m_filter(filter), m_rows(store.database, queryOf(filter)) {
  if (m_filter.since) m_rows.bind(1, microsecondsOf(*m_filter.since));
  if (m_filter.until) m_rows.bind(2, microsecondsOf(*m_filter.until));
  if (m_filter.outcome) m_rows.bind(3, std::string_view(engine::nameOf(*m_filter.outcome)));
  if (!m_filter.test.empty()) m_rows.bind(4, std::string_view(m_filter.test));
  m_rows.bind(5, std::uint64_t{most});
}

std::optional<RunRecord> RunRows::next() {
  if (!m_rows.step()) return std::nullopt;
  return recordIn(m_store, m_rows);
}

std::int64_t numberOf(Store& store, const std::string& id) {
  Statement numbers(store.database, "SELECT number FROM runs WHERE id = ?");
  numbers.bind(1, std::string_view(id));
  if (numbers.step()) return numbers.integer(0);
  throw HistoryError("there is no run \"" + text::visible(id) + "\" in " + store.database.name());
}

RunRecord recordOf(Store& store, std::int64_t number) {
  Statement rows(store.database, std::string(kColumns) + "WHERE number = ?");
  rows.bind(1, number);
  if (rows.step()) return recordIn(store, rows);
  throw HistoryError("a run has just been removed from " + store.database.name());
}

std::optional<engine::Outcome> outcomeIn(const Database& database, const Statement& row,
                                         int column) {
  if (row.isNull(column)) return std::nullopt;
  engine::Outcome outcome{};
  if (engine::readName(row.bytes(column), outcome)) return outcome;
  throw DamagedHistory(database.name() + " is a damaged database: \"" +
                       text::visible(row.bytes(column)) + "\" is no outcome");
}

engine::Time timeOf(std::int64_t microseconds) {
  constexpr std::int64_t kSecond = 1'000'000;
  constexpr std::int64_t kFirst = -62'135'596'800 * kSecond;           // 0001-01-01
  constexpr std::int64_t kLast = 253'402'300'800 * kSecond - kSecond;  // 9999-12-31
  return engine::Time(std::chrono::microseconds(std::clamp(microseconds, kFirst, kLast)));
}

std::int64_t microsecondsOf(engine::Time time) { return time.time_since_epoch().count(); }

}  // namespace history
