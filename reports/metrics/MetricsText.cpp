#include <chrono>
#include <set>
#include <string>
#include <utility>

#include "engine/events/EventNames.h"
#include "reports/metrics/Exposition.h"
#include "reports/metrics/MetricsWriter.h"

namespace reports::metrics {
namespace {

using engine::Cause;
using engine::Outcome;

/// Puts metrics behind each other; one without a series is not there.
class Text {
 public:
  void metric(const std::string& name, const char* help) {
    m_name = name;
    m_head = metricHead(name, help);
  }
  void series(const Labels& labels, double value) {
    m_text += std::exchange(m_head, "") + m_name + labelSet(labels) + " " + metricNumber(value);
    m_text += '\n';
  }
  void single(const std::string& name, const char* help, double value) {
    metric(name, help);
    series({}, value);
  }
  const std::string& text() const { return m_text; }

 private:
  std::string m_text;
  std::string m_name;
  std::string m_head;
};

double secondsOf(engine::Time time) {
  constexpr double kMicroseconds = 1e6;
  return static_cast<double>(time.time_since_epoch().count()) / kMicroseconds;
}

double countOf(std::uint64_t count) { return static_cast<double>(count); }

Labels labelsOf(const TestKey& test) {
  return {
      {"test", std::get<0>(test)}, {"device", std::get<1>(test)}, {"element", std::get<2>(test)}};
}

Labels with(Labels labels, const char* name, std::string value) {
  labels.emplace_back(name, std::move(value));
  return labels;
}

void addMachine(Text& text, const RunMetrics& run) {
  text.metric("diags_build_info", "The diagnostics program that ran.");
  text.series({{"version", run.run().version}}, 1);
  text.metric("diags_machine_info", "The machine that was diagnosed.");
  text.series({{"host", run.run().host}, {"firmware", run.run().firmware}}, 1);
  text.metric("diags_part_info", "A part of the machine.");
  std::set<std::string> told;
  for (const engine::Part& part : run.run().parts) {
    const Labels labels = {{"kind", part.kind},         {"part", part.name},
                           {"location", part.location}, {"manufacturer", part.manufacturer},
                           {"model", part.model},       {"version", part.version},
                           {"serial", part.serial}};
    if (told.insert(labelSet(labels)).second) text.series(labels, 1);
  }
}

void addTimes(Text& text, const RunMetrics& run) {
  text.single("diags_run_start_timestamp_seconds", "When the run began.", secondsOf(run.from()));
  text.single("diags_run_end_timestamp_seconds", "When the run ended.", secondsOf(run.to()));
  text.single("diags_run_duration_seconds", "How long the run took.", run.end().seconds);
  text.single("diags_run_complete",
              "Whether each test that was planned was left out on purpose or came to a verdict.",
              run.isComplete() ? 1 : 0);
}

void addStates(Text& text, const Labels& labels, Outcome current) {
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    const auto outcome = static_cast<Outcome>(i);
    text.series(with(labels, "outcome", engine::nameOf(outcome)), outcome == current ? 1 : 0);
  }
}

void addSums(Text& text, const RunMetrics& run) {
  text.metric("diags_run_outcome", "How the run ended: 1 for that outcome, 0 for the others.");
  addStates(text, {}, run.end().outcome);
  text.metric("diags_run_tests", "How many runs of tests ended so.");
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    text.series({{"outcome", engine::nameOf(static_cast<Outcome>(i))}},
                countOf(run.outcomes().at(i)));
  }
  text.metric("diags_run_errors", "How often something could not be done, by cause.");
  for (std::size_t i = 0; i < kCauses; ++i) {
    text.series({{"cause", engine::nameOf(static_cast<Cause>(i))}}, countOf(run.errors().at(i)));
  }
  text.single("diags_run_left_out", "Tests, parts, findings and values beyond what has room here.",
              countOf(run.leftOut()));
}

void addTests(Text& text, const RunMetrics& run) {
  text.metric("diags_test_outcome",
              "The worst outcome of the test in the run: 1 for it, 0 for the others.");
  for (const auto& [key, test] : run.tests()) addStates(text, labelsOf(key), test.worst);
  text.metric("diags_test_runs", "How often the run had the test.");
  for (const auto& [key, test] : run.tests()) text.series(labelsOf(key), countOf(test.runs));
  text.metric("diags_test_duration_seconds", "How long the test took, the last time.");
  for (const auto& [key, test] : run.tests()) text.series(labelsOf(key), test.seconds);
  text.metric("diags_test_findings", "What the test found about a part: how often, by verdict.");
  for (const auto& [key, count] : run.findings()) {
    const auto& [test, part, verdict] = key;
    text.series(with(with(labelsOf(test), "part", part), "verdict", engine::nameOf(verdict)),
                countOf(count));
  }
}

Labels labelsOf(const SeriesKey& key) {
  return with(with(labelsOf(key.test), "measurement", key.measurement), "part", key.part);
}

/// The unit stands in the name, or where the metric is for any of them, in a label.
void addValues(Text& text, const std::string& suffix,
               const std::map<SeriesKey, SeriesMetrics>& measured) {
  const bool isKnown = !suffix.empty();
  text.metric("diags_measurement_" + (isKnown ? suffix : "value"),
              isKnown ? "What a test measured, the last time."
                      : "What a test measured, the last time: a count, a truth, or in the unit of "
                        "the label.");
  for (const auto& [key, series] : measured) {
    text.series(isKnown ? labelsOf(key) : with(labelsOf(key), "unit", key.unit), series.last);
  }
}

void addMeasurements(Text& text, const RunMetrics& run) {
  // A test may measure something in several units.
  std::map<SeriesKey, std::uint64_t> beyond;
  for (const auto& [suffix, measured] : run.measurements()) {
    if (measured.empty()) continue;
    addValues(text, suffix, measured);
    for (const auto& [key, series] : measured) {
      beyond[{key.test, key.measurement, key.part, ""}] += series.beyond;
    }
  }
  text.metric("diags_measurement_beyond_limits",
              "How many values of the run were not within their limits.");
  for (const auto& [key, count] : beyond) text.series(labelsOf(key), countOf(count));
}

}  // namespace

std::string textOf(const RunMetrics& run) {
  Text text;
  addMachine(text, run);
  addTimes(text, run);
  addSums(text, run);
  addTests(text, run);
  addMeasurements(text, run);
  return text.text();
}

}  // namespace reports::metrics
