#include "reports/metrics/RunMetrics.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "reports/metrics/BaseUnit.h"
#include "reports/metrics/Exposition.h"

namespace reports::metrics {
namespace {

using engine::Outcome;

/// The worse, the greater: that one repetition failed is not forgotten for the others that passed.
int weightOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::kSkipped:
      return 0;
    case Outcome::kPassed:
      return 1;
    case Outcome::kWarned:
      return 2;
    case Outcome::kIncomplete:
      return 3;
    case Outcome::kAborted:
      return 4;
    case Outcome::kBroken:
      return 5;
    case Outcome::kFailed:
      return 6;
  }
  return 0;
}

/// Nothing for a text: each other one would be another series.
std::optional<double> numberOf(const engine::MeasuredValue& value) {
  if (const auto* const number = std::get_if<double>(&value)) return *number;
  if (const auto* const truth = std::get_if<bool>(&value)) return *truth ? 1 : 0;
  return std::nullopt;
}

bool isBeyond(const engine::Measurement& measurement) {
  const auto* const number = std::get_if<double>(&measurement.value);
  if (number == nullptr) return false;
  return (measurement.minimum && *number < *measurement.minimum) ||
         (measurement.maximum && *number > *measurement.maximum);
}

engine::Part cleaned(const engine::Part& part) {
  return {labelText(part.kind),         labelText(part.name),  labelText(part.location),
          labelText(part.manufacturer), labelText(part.model), labelText(part.version),
          labelText(part.serial)};
}

TestKey keyOfTest(const engine::TestStarted& test) {
  const std::string& name = test.service.empty() ? test.name : test.service;
  return {labelText(name), labelText(test.device), labelText(test.element)};
}

}  // namespace

/// What each kind of event adds.
class RunMetrics::Taking {
 public:
  Taking(RunMetrics& metrics, const engine::Event& event) : m_metrics(metrics), m_event(event) {}

  void operator()(const engine::RunStarted& run) { m_metrics.begin(m_event, run); }
  void operator()(const engine::TestStarted& test) {
    m_metrics.m_open[m_event.test] = keyOfTest(test);
  }
  void operator()(const engine::Measurement& measurement) {
    m_metrics.measure(m_event.test, measurement);
  }
  void operator()(const engine::Diagnosis& finding) { m_metrics.find(m_event.test, finding); }
  void operator()(const engine::Error& error) {
    ++m_metrics.m_errors.at(static_cast<std::size_t>(error.cause));
  }
  void operator()(const engine::Ended& end) { m_metrics.end(m_event.test, end); }
  template <class Other>
  void operator()(const Other&) {}

 private:
  RunMetrics& m_metrics;
  const engine::Event& m_event;
};

void RunMetrics::take(const engine::Event& event) {
  if (hasEnded()) return;
  if (!std::exchange(m_hasBegun, true)) m_from = event.time;
  m_to = event.time;
  std::visit(Taking(*this, event), event.body);
}

bool RunMetrics::isComplete() const {
  const auto told = [this](Outcome outcome) {
    return m_outcomes.at(static_cast<std::size_t>(outcome)) == 0 && m_end->outcome != outcome;
  };
  std::uint64_t ended = 0;
  for (const std::uint64_t count : m_outcomes) ended += count;
  return m_open.empty() && ended >= m_run.tests && told(Outcome::kAborted) &&
         told(Outcome::kIncomplete) && told(Outcome::kBroken);
}

void RunMetrics::begin(const engine::Event& event, const engine::RunStarted& run) {
  m_from = event.time;
  m_run.version = labelText(run.version);
  m_run.host = labelText(run.host);
  m_run.firmware = labelText(run.firmware);
  m_run.tests = run.tests;
  const std::size_t parts = std::min(run.parts.size(), m_limits.parts);
  m_leftOut += run.parts.size() - parts;
  m_run.parts.clear();
  for (std::size_t i = 0; i < parts; ++i) m_run.parts.push_back(cleaned(run.parts[i]));
}

TestKey RunMetrics::keyOf(std::uint64_t test) const {
  const auto found = m_open.find(test);
  return found == m_open.end() ? TestKey() : found->second;
}

template <class Map, class Key>
typename Map::mapped_type* RunMetrics::place(Map& map, const Key& key, std::size_t& count,
                                             std::size_t most) {
  const auto found = map.find(key);
  if (found != map.end()) return &found->second;
  if (count == most) {
    ++m_leftOut;
    return nullptr;
  }
  ++count;
  return &map[key];
}

void RunMetrics::measure(std::uint64_t test, const engine::Measurement& measurement) {
  const std::optional<double> number = numberOf(measurement.value);
  if (!number) return;
  const BaseUnit unit = baseUnitOf(measurement.unit);
  SeriesKey key{keyOf(test), labelText(measurement.name), labelText(measurement.part), ""};
  if (unit.suffix.empty()) key.unit = labelText(measurement.unit);
  SeriesMetrics* const series =
      place(m_measurements[unit.suffix], key, m_measurementCount, m_limits.measurements);
  if (series == nullptr) return;
  series->last = unit.of(*number);
  if (isBeyond(measurement)) ++series->beyond;
}

void RunMetrics::find(std::uint64_t test, const engine::Diagnosis& finding) {
  const FindingKey key{keyOf(test), labelText(finding.part), finding.verdict};
  std::uint64_t* const count = place(m_findings, key, m_findingCount, m_limits.findings);
  if (count != nullptr) ++*count;
}

void RunMetrics::end(std::uint64_t test, const engine::Ended& end) {
  if (test == 0) {
    m_end = engine::Ended{end.outcome, "", end.seconds, "", "", ""};
    return;
  }
  ++m_outcomes.at(static_cast<std::size_t>(end.outcome));
  TestMetrics* const metrics = place(m_tests, keyOf(test), m_testCount, m_limits.tests);
  m_open.erase(test);
  if (metrics == nullptr) return;
  ++metrics->runs;
  metrics->seconds = end.seconds;
  if (weightOf(end.outcome) > weightOf(metrics->worst)) metrics->worst = end.outcome;
}

}  // namespace reports::metrics
