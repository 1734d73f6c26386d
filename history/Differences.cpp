#include <algorithm>
#include <map>
#include <tuple>

#include "history/History.h"
#include "history/store/RunRows.h"
#include "history/store/Statement.h"
#include "history/store/Store.h"

namespace history {
namespace {

using engine::Outcome;

/// How grave an outcome is: the greatest of the repetitions is a test's own.
int gravityOf(const std::optional<Outcome>& outcome) {
  if (!outcome) return 5;
  switch (*outcome) {
    case Outcome::kFailed:
      return 6;
    case Outcome::kBroken:
      return 4;
    case Outcome::kIncomplete:
      return 3;
    case Outcome::kAborted:
      return 2;
    case Outcome::kWarned:
      return 1;
    case Outcome::kPassed:
      return 0;
    case Outcome::kSkipped:
      return -1;
  }
  return 0;
}

/// Name, part and unit.
using MeasurementKey = std::tuple<std::string, std::string, std::string>;

/// One run's side of the comparison, by test identifier.
struct Side {
  std::map<std::string, TestVerdict> verdicts;
  std::map<std::string, std::map<MeasurementKey, Measured>> measurements;
};

void readVerdicts(Store& store, std::int64_t run, Side& side) {
  Statement rows(store.database,
                 "SELECT name, outcome, count(*) FROM tests WHERE run = ? GROUP BY name, outcome");
  rows.bind(1, run);
  while (rows.step()) {
    const std::optional<Outcome> outcome = outcomeIn(store.database, rows, 1);
    const auto [verdict, isNew] = side.verdicts.try_emplace(rows.text(0), TestVerdict{0, outcome});
    verdict->second.repetitions += rows.count(2);
    if (gravityOf(outcome) > gravityOf(verdict->second.worst)) verdict->second.worst = outcome;
  }
}

void readMeasurements(Store& store, std::int64_t run, Side& side) {
  // Beside the largest sequence number, `text` is that row's.
  Statement rows(
      store.database,
      "SELECT tests.name, measurements.name, part, unit, count(*), avg(number), text, "
      "max(sequence) FROM measurements JOIN tests USING (run, test) WHERE run = ? GROUP BY "
      "tests.name, measurements.name, part, unit");
  rows.bind(1, run);
  while (rows.step()) {
    Measured& measured =
        side.measurements[rows.text(0)][{rows.text(1), rows.text(2), rows.text(3)}];
    measured.times = rows.count(4);
    if (rows.isNull(5)) {
      measured.text = rows.text(6);
    } else {
      measured.mean = rows.real(5);
    }
  }
}

Side sideOf(Store& store, const std::string& id) {
  const std::int64_t run = numberOf(store, id);
  Side side;
  readVerdicts(store, run, side);
  readMeasurements(store, run, side);
  return side;
}

template <typename Map>
auto valueIn(const Map& map, const typename Map::key_type& key) {
  const auto found = map.find(key);
  return found == map.end() ? std::optional<typename Map::mapped_type>() : found->second;
}

/// The keys of both, each once, in order.
template <typename Map>
std::vector<typename Map::key_type> keysOf(const Map& one, const Map& other) {
  std::vector<typename Map::key_type> keys;
  keys.reserve(one.size() + other.size());
  for (const auto& entry : one) keys.push_back(entry.first);
  for (const auto& entry : other) keys.push_back(entry.first);
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

std::vector<MeasurementDifference> compared(const std::map<MeasurementKey, Measured>& before,
                                            const std::map<MeasurementKey, Measured>& after) {
  std::vector<MeasurementDifference> all;
  for (const MeasurementKey& key : keysOf(before, after)) {
    const auto& [name, part, unit] = key;
    all.push_back({name, part, unit, valueIn(before, key), valueIn(after, key)});
  }
  return all;
}

}  // namespace

Difference History::diff(const std::string& before, const std::string& after) const {
  Side one = sideOf(*m_store, before);
  Side other = sideOf(*m_store, after);
  Difference difference{run(before), run(after), {}};
  for (const std::string& name : keysOf(one.verdicts, other.verdicts)) {
    difference.tests.push_back({name, valueIn(one.verdicts, name), valueIn(other.verdicts, name),
                                compared(one.measurements[name], other.measurements[name])});
  }
  return difference;
}

}  // namespace history
