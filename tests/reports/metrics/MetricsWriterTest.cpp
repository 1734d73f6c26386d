#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "reports/metrics/MetricsWriter.h"
#include "tests/reports/SampleRun.h"

namespace reports {
namespace {

using namespace engine;

std::string metricsOf(const EventList& run) { return written<MetricsWriter>(run.events()); }

std::vector<std::string> linesOf(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// What stands behind that series; empty where it is not there.
std::string valueOf(const std::string& text, const std::string& series) {
  for (const std::string& line : linesOf(text)) {
    if (line.rfind(series + " ", 0) == 0) return line.substr(series.size() + 1);
  }
  return "";
}

std::string seriesOf(const std::string& metric, int test, const std::string& more = "") {
  return metric + "{test=\"DIAGS: Memory Test\",device=\"mem" + std::to_string(test) +
         "\",element=\"Memory\"" + more + "}";
}

std::string outcomeOf(const std::string& text, int test) {
  for (const char* outcome :
       {"passed", "warned", "failed", "aborted", "incomplete", "broken", "skipped"}) {
    const std::string label = std::string(",outcome=\"") + outcome + "\"";
    if (valueOf(text, seriesOf("diags_test_outcome", test, label)) == "1") return outcome;
  }
  return "";
}

EventList begun(std::uint64_t tests) {
  EventList run;
  run.add(0, RunStarted{"1.0", {}, {}, "bench-7", "F1", {}, tests});
  return run;
}

TEST(MetricsWriter, WritesNothingBeforeTheRunsEnd) {
  std::vector<Event> events = sampleRun();
  events.pop_back();
  EXPECT_EQ(written<MetricsWriter>(events), "");
}

TEST(MetricsWriter, WritesOnceHoweverOftenTheRunEnds) {
  EventList run = begun(0);
  run.end(0, Outcome::kPassed);
  const std::string once = metricsOf(run);
  run.end(0, Outcome::kFailed);
  EXPECT_EQ(metricsOf(run), once);
}

TEST(MetricsWriter, TellsTheMachineAndItsParts) {
  const std::string text = written<MetricsWriter>(sampleRun());
  EXPECT_EQ(valueOf(text, "diags_build_info{version=\"1.0.0\"}"), "1");
  EXPECT_EQ(valueOf(text, "diags_machine_info{host=\"bench-7\",firmware=\"F1.02\"}"), "1");
  EXPECT_EQ(valueOf(text,
                    "diags_part_info{kind=\"memory\",part=\"DIMM 1\",location=\"P0 CHANNEL A\","
                    "manufacturer=\"Maker\",model=\"M-16\",version=\"\",serial=\"0xCAFE01\"}"),
            "1");
}

TEST(MetricsWriter, TellsWhenTheRunWas) {
  const std::string text = written<MetricsWriter>(sampleRun());
  EXPECT_EQ(valueOf(text, "diags_run_start_timestamp_seconds"), "1.79e+09");
  EXPECT_EQ(valueOf(text, "diags_run_end_timestamp_seconds"), "1790000000.025");
}

TEST(MetricsWriter, TellsHowEachTestEnded) {
  const std::string text = written<MetricsWriter>(sampleRun());
  const char* const wanted[] = {"passed", "failed", "broken", "skipped", "aborted"};
  for (int test = 1; test <= 5; ++test) EXPECT_EQ(outcomeOf(text, test), wanted[test - 1]) << test;
}

TEST(MetricsWriter, CountsOutcomesAndErrors) {
  const std::string text = written<MetricsWriter>(sampleRun());
  EXPECT_EQ(valueOf(text, "diags_run_tests{outcome=\"failed\"}"), "1");
  EXPECT_EQ(valueOf(text, "diags_run_tests{outcome=\"incomplete\"}"), "0");
  EXPECT_EQ(valueOf(text, "diags_run_errors{cause=\"crashed\"}"), "1");
  EXPECT_EQ(valueOf(text, "diags_run_errors{cause=\"timedOut\"}"), "0");
}

TEST(MetricsWriter, NamesThePartThatATestFoundFaulty) {
  const std::string text = written<MetricsWriter>(sampleRun());
  EXPECT_EQ(valueOf(text, seriesOf("diags_test_findings", 2, ",part=\"DIMM 1\",verdict=\"fail\"")),
            "1");
}

// Catches a failure that is forgotten because the next repetition passed.
TEST(MetricsWriter, OfRepetitionsTheWorstOutcomeCounts) {
  EventList run = begun(3);
  for (const Outcome outcome : {Outcome::kPassed, Outcome::kFailed, Outcome::kPassed}) {
    run.begin(1).end(1, outcome);
  }
  const std::string text = metricsOf(run.end(0, Outcome::kFailed));
  EXPECT_EQ(outcomeOf(text, 1), "failed");
  EXPECT_EQ(valueOf(text, seriesOf("diags_test_runs", 1)), "3");
}

TEST(MetricsWriter, OfASeriesTheLastValueCounts) {
  EventList run = begun(1).begin(1);
  for (const double value : {1.0, 3.0, 2.0}) {
    run.add(1, Measurement{"Speed", value, "MiB/s", 2.0, {}, "vda"});
  }
  const std::string text = metricsOf(run.end(1, Outcome::kPassed).end(0, Outcome::kPassed));
  const std::string labels = ",measurement=\"Speed\",part=\"vda\"";
  EXPECT_EQ(valueOf(text, seriesOf("diags_measurement_bytes_per_second", 1, labels)), "2097152");
  EXPECT_EQ(valueOf(text, seriesOf("diags_measurement_beyond_limits", 1, labels)), "1");
}

TEST(MetricsWriter, AUnitThatIsNotKnownIsALabel) {
  EventList run = begun(1).begin(1).add(1, Measurement{"Way", 2.5, "furlong", {}, {}, ""});
  run.add(1, Measurement{"Locked", true, "", {}, {}, ""});
  const std::string text = metricsOf(run.end(1, Outcome::kPassed).end(0, Outcome::kPassed));
  EXPECT_EQ(valueOf(text, seriesOf("diags_measurement_value", 1,
                                   ",measurement=\"Way\",part=\"\",unit=\"furlong\"")),
            "2.5");
  EXPECT_EQ(valueOf(text, seriesOf("diags_measurement_value", 1,
                                   ",measurement=\"Locked\",part=\"\",unit=\"\"")),
            "1");
}

TEST(MetricsWriter, TextsThatWereMeasuredAreNoMetrics) {
  EventList run =
      begun(1).begin(1).add(1, Measurement{"Mode", std::string("fast"), "", {}, {}, ""});
  EXPECT_EQ(metricsOf(run.end(1, Outcome::kPassed).end(0, Outcome::kPassed)).find("Mode"),
            std::string::npos);
}

struct CompletenessRow {
  const char* name;
  std::uint64_t planned;
  std::vector<Outcome> tests;
  Outcome run;
  const char* complete;
};

class Completeness : public testing::TestWithParam<CompletenessRow> {};

TEST_P(Completeness, IsOfEveryTestThatWasPlanned) {
  EventList run = begun(GetParam().planned);
  std::uint64_t number = 0;
  for (const Outcome outcome : GetParam().tests) {
    ++number;
    run.begin(number).end(number, outcome);
  }
  const std::string text = metricsOf(run.end(0, GetParam().run));
  EXPECT_EQ(valueOf(text, "diags_run_complete"), GetParam().complete);
}

const CompletenessRow kCompletenessRows[] = {
    {"AllPassed", 2, {Outcome::kPassed, Outcome::kWarned}, Outcome::kPassed, "1"},
    {"AFailureIsAVerdict", 1, {Outcome::kFailed}, Outcome::kFailed, "1"},
    {"LeftOutOnPurpose", 2, {Outcome::kPassed, Outcome::kSkipped}, Outcome::kPassed, "1"},
    {"NobodyKnowsHowMany", 0, {Outcome::kPassed}, Outcome::kPassed, "1"},
    {"OneIsMissing", 2, {Outcome::kFailed}, Outcome::kFailed, "0"},
    {"Incomplete", 1, {Outcome::kIncomplete}, Outcome::kIncomplete, "0"},
    {"Broken", 2, {Outcome::kFailed, Outcome::kBroken}, Outcome::kFailed, "0"},
    {"Aborted", 2, {Outcome::kPassed, Outcome::kAborted}, Outcome::kAborted, "0"},
    {"TheRunItself", 1, {Outcome::kPassed}, Outcome::kBroken, "0"},
};
INSTANTIATE_TEST_SUITE_P(All, Completeness, testing::ValuesIn(kCompletenessRows),
                         [](const auto& row) { return std::string(row.param.name); });

metrics::Limits tightLimits() {
  metrics::Limits limits;
  limits.tests = limits.measurements = limits.findings = limits.parts = 1;
  return limits;
}

TEST(MetricsWriter, WhatHasNoRoomIsCounted) {
  std::ostringstream out;
  MetricsWriter writer(out, "file", tightLimits());
  for (const Event& event : sampleRun()) writer.take(event);
  // A part, four tests and a truth that was measured; the counts by outcome are of all.
  EXPECT_EQ(valueOf(out.str(), "diags_run_left_out"), "6");
  EXPECT_EQ(valueOf(out.str(), "diags_run_tests{outcome=\"failed\"}"), "1");
}

/// Each metric has its two lines once, in front of its series, and no series is there twice:
/// whoever collects the file would leave all of it out.
void expectOrderly(const std::string& text) {
  std::set<std::string> metrics;
  std::set<std::string> series;
  std::string current;
  for (const std::string& line : linesOf(text)) {
    if (line.rfind("# HELP ", 0) == 0) {
      current = line.substr(7, line.find(' ', 7) - 7);
      EXPECT_TRUE(metrics.insert(current).second) << line;
    } else if (line.rfind("# TYPE ", 0) == 0) {
      EXPECT_EQ(line, "# TYPE " + current + " gauge");
    } else {
      EXPECT_EQ(line.substr(0, line.find_first_of("{ ")), current);
      EXPECT_TRUE(series.insert(line.substr(0, line.rfind(' '))).second) << line;
    }
  }
}

TEST(MetricsWriter, WhateverTextsHoldTheFileIsOrderly) {
  expectOrderly(written<MetricsWriter>(sampleRun()));
  expectOrderly(written<MetricsWriter>(longRun()));
  for (const HostileText& text : hostileTexts()) {
    SCOPED_TRACE(text.name);
    expectOrderly(written<MetricsWriter>(runOf(text.text)));
  }
}

// Catches series twice where two names differ only in what is cut off, or two parts in nothing.
TEST(MetricsWriter, WhatCannotBeToldApartIsOneSeries) {
  const std::string name(300, 'n');
  const Part part{"memory", "DIMM", "", "", "", "", ""};
  EventList run;
  run.add(0, RunStarted{"1", {}, {}, "", "", {part, part}, 2});
  for (const std::uint64_t test : {1, 2}) {
    run.add(test, TestStarted{"", name + std::to_string(test), "d", "e", 1, 0});
    run.add(test, Measurement{name + std::to_string(test), 1.0, "s", {}, {}, ""});
    run.add(test, Measurement{name + std::to_string(test), 1.0, "MiB", {}, {}, ""});
    run.end(test, Outcome::kPassed);
  }
  expectOrderly(metricsOf(run.end(0, Outcome::kPassed)));
}

// Catches metrics whose order hangs on which of two tests ended first.
TEST(MetricsWriter, TheOrderIsThatOfTheNames) {
  const auto runIn = [](std::uint64_t first, std::uint64_t second) {
    EventList run = begun(2);
    run.begin(1).begin(2).end(first, Outcome::kPassed).end(second, Outcome::kPassed);
    return metricsOf(run.end(0, Outcome::kPassed));
  };
  EXPECT_EQ(runIn(1, 2), runIn(2, 1));
}

TEST(MetricsWriter, AFileThatCannotBeWrittenIsNamed) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  MetricsWriter writer(out, "diags.prom");
  Event end;
  end.body = Ended{Outcome::kPassed, "", 1, "", "", ""};
  try {
    writer.take(end);
    FAIL() << "no exception";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(std::string(error.what()).find("diags.prom"), 0U);
  }
}

}  // namespace
}  // namespace reports
