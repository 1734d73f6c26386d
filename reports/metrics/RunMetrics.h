#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>

#include "engine/events/Event.h"
#include "reports/metrics/Limits.h"

/// What metrics tell of a run, reduced while its events come: a value for each thing, however often
/// it was measured. Texts are `labelText`s, so that what could not be told apart is one series.
namespace reports::metrics {

/// Test, device and element.
using TestKey = std::tuple<std::string, std::string, std::string>;

/// The runs of one test.
struct TestMetrics {
  std::uint64_t runs = 0;
  engine::Outcome worst = engine::Outcome::kSkipped;
  double seconds = 0;  ///< of the last one
};

/// Test, measurement, part, and the unit where it is no part of the metric's name.
struct SeriesKey {
  TestKey test;
  std::string measurement;
  std::string part;
  std::string unit;

  bool operator<(const SeriesKey& other) const {
    return std::tie(test, measurement, part, unit) <
           std::tie(other.test, other.measurement, other.part, other.unit);
  }
};

struct SeriesMetrics {
  double last = 0;  ///< in the metric's unit
  std::uint64_t beyond = 0;
};

/// Test, part and verdict.
using FindingKey = std::tuple<TestKey, std::string, engine::Verdict>;

constexpr std::size_t kOutcomes = 7;
constexpr std::size_t kCauses = 9;

class RunMetrics {
 public:
  explicit RunMetrics(const Limits& limits = {}) : m_limits(limits) {}

  void take(const engine::Event& event);

  /// Whether the run's end has come.
  bool hasEnded() const { return m_end.has_value(); }
  /// Whether every test that was planned came to an end that says something, or was left out.
  bool isComplete() const;

  const engine::RunStarted& run() const { return m_run; }
  const engine::Ended& end() const { return *m_end; }
  engine::Time from() const { return m_from; }
  engine::Time to() const { return m_to; }

  const std::array<std::uint64_t, kOutcomes>& outcomes() const { return m_outcomes; }
  const std::array<std::uint64_t, kCauses>& errors() const { return m_errors; }
  const std::map<TestKey, TestMetrics>& tests() const { return m_tests; }
  const std::map<FindingKey, std::uint64_t>& findings() const { return m_findings; }
  /// By the suffix of the metric's name, which is empty where the unit is a label.
  const std::map<std::string, std::map<SeriesKey, SeriesMetrics>>& measurements() const {
    return m_measurements;
  }
  /// How many things would have been further series than the limits allow.
  std::uint64_t leftOut() const { return m_leftOut; }

 private:
  class Taking;

  void begin(const engine::Event& event, const engine::RunStarted& run);
  void end(std::uint64_t test, const engine::Ended& end);
  void measure(std::uint64_t test, const engine::Measurement& measurement);
  void find(std::uint64_t test, const engine::Diagnosis& finding);
  TestKey keyOf(std::uint64_t test) const;
  template <class Map, class Key>
  typename Map::mapped_type* place(Map& map, const Key& key, std::size_t& count, std::size_t most);

  Limits m_limits;
  engine::RunStarted m_run;
  std::optional<engine::Ended> m_end;
  engine::Time m_from;
  engine::Time m_to;
  bool m_hasBegun = false;
  std::map<std::uint64_t, TestKey> m_open;
  std::array<std::uint64_t, kOutcomes> m_outcomes{};
  std::array<std::uint64_t, kCauses> m_errors{};
  std::map<TestKey, TestMetrics> m_tests;
  std::map<FindingKey, std::uint64_t> m_findings;
  std::map<std::string, std::map<SeriesKey, SeriesMetrics>> m_measurements;
  std::size_t m_testCount = 0;
  std::size_t m_findingCount = 0;
  std::size_t m_measurementCount = 0;
  std::uint64_t m_leftOut = 0;
};

}  // namespace reports::metrics
