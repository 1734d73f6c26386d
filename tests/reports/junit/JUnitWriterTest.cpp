#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reports/junit/JUnitWriter.h"
#include "tests/reports/SampleRun.h"

namespace reports {
namespace {

using engine::Outcome;
using testing::HasSubstr;
using testing::Not;

std::string junitOf(const EventList& run) { return written<JUnitWriter>(run.events()); }

/// The case of test 1, which ends so.
std::string caseThatEnds(Outcome outcome, const std::string& text = "why") {
  EventList run;
  run.begin(1).end(1, outcome, text).end(0, outcome);
  const std::string document = junitOf(run);
  const std::size_t begin = document.find("<testcase");
  return document.substr(begin, document.find("</testcase>") - begin);
}

TEST(JUnitWriter, CountsWhatBecameOfTheTests) {
  EXPECT_THAT(written<JUnitWriter>(sampleRun()),
              HasSubstr(R"(<testsuite name="diags" tests="5" failures="1" errors="2" skipped="1")"
                        R"( time="1.500" timestamp="2026-09-21T14:13:20" hostname="bench-7">)"));
}

TEST(JUnitWriter, OnlyAVerdictAboutHardwareIsAFailure) {
  EXPECT_THAT(caseThatEnds(Outcome::kFailed), HasSubstr(R"(<failure message="why" type="fail">)"));
  EXPECT_THAT(caseThatEnds(Outcome::kAborted),
              HasSubstr(R"(<error message="why" type="aborted">)"));
  EXPECT_THAT(caseThatEnds(Outcome::kIncomplete),
              HasSubstr(R"(<error message="why" type="incomplete">)"));
  EXPECT_THAT(caseThatEnds(Outcome::kBroken), HasSubstr(R"(<error message="why" type="broken">)"));
  EXPECT_THAT(caseThatEnds(Outcome::kSkipped), HasSubstr(R"(<skipped message="why"/>)"));
  for (const Outcome passed : {Outcome::kPassed, Outcome::kWarned}) {
    const std::string element = caseThatEnds(passed);
    for (const char* verdict : {"<failure", "<error", "<skipped"}) {
      EXPECT_THAT(element, Not(HasSubstr(verdict)));
    }
  }
}

TEST(JUnitWriter, AnErrorHasItsCauseAndAFailureWhatToDo) {
  const std::string document = written<JUnitWriter>(sampleRun());
  EXPECT_THAT(document, HasSubstr("<error message=\"The worker crashed.\" type=\"crashed\">The "
                                  "worker crashed.\nCode: 11\nProvider: Mem\n"
                                  "Operation: invoke\nLibrary: libm.so\n</error>"));
  EXPECT_THAT(document, HasSubstr("<failure message=\"Fail: 1 error\" type=\"fail\">"
                                  "fail: DIMM 1: bit 5 stuck\nRecommended: Replace DIMM 1.\n"));
}

TEST(JUnitWriter, NamesTheMachine) {
  const std::string document = written<JUnitWriter>(sampleRun());
  EXPECT_THAT(document,
              HasSubstr(R"(<property name="commandLine" value="diags run --all a b "/>)"));
  EXPECT_THAT(document, HasSubstr(R"(<property name="firmware" value="F1.02"/>)"));
  EXPECT_THAT(document, HasSubstr(R"(<property name="parameter.seed" value="5"/>)"));
  EXPECT_THAT(document,
              HasSubstr(R"(<property name="memory" value="DIMM 1, location P0 CHANNEL A, )"
                        R"(manufacturer Maker, model M-16, serial number 0xCAFE01"/>)"));
}

TEST(JUnitWriter, OutputsAndMeasurementsAreKeptApart) {
  EXPECT_THAT(written<JUnitWriter>(sampleRun()),
              HasSubstr("<system-out>Step: Walking ones\nprobing\nAll well.\n"
                        "DIMM 1: bandwidth = 11.25 GiB/s, at least 5, at most 40\nlocked = true\n"
                        "Bank 5: mode = fast\nPass: 0 errors\na record\nof two lines\n"
                        "</system-out>\n<system-err>careful\na warning\n</system-err>"));
}

TEST(JUnitWriter, CasesStandInTheOrderOfTheirNumbers) {
  EventList run;
  run.begin(2).begin(1).end(2, Outcome::kPassed).end(1, Outcome::kPassed).end(0, Outcome::kPassed);
  const std::string document = junitOf(run);
  EXPECT_LT(document.find("mem1"), document.find("mem2"));
}

TEST(JUnitWriter, NoTwoCasesHaveOneName) {
  EventList run;
  for (const std::uint64_t test : {1, 2, 3}) {
    run.add(test, engine::TestStarted{"T", "S", "d", "e", test == 3 ? 2U : 1U, 0});
    run.end(test, Outcome::kPassed);
  }
  run.end(0, Outcome::kPassed);
  const std::string document = junitOf(run);
  EXPECT_THAT(document, HasSubstr("name=\"T\""));
  EXPECT_THAT(document, HasSubstr("name=\"T [2]\""));
  EXPECT_THAT(document, HasSubstr("name=\"T (repetition 2)\""));
}

TEST(JUnitWriter, ATestThatTheRunLeavesOpenIsAnError) {
  EventList run;
  run.begin(1).end(0, Outcome::kBroken);
  EXPECT_THAT(junitOf(run), HasSubstr("message=\"The run ended before the test did.\""));
}

// Catches a run that was cut off between two tests and looks like one in which all is well.
TEST(JUnitWriter, ARunWithoutAnEndIsAnErrorThoughNoTestWasOpen) {
  EventList run;
  run.begin(1).end(1, Outcome::kPassed);
  run.add(0, engine::Error{engine::Cause::kOther, "The stream ends.", 0, "", "", {}});
  run.end(0, Outcome::kBroken, "The stream ends.");
  const std::string document = junitOf(run);
  EXPECT_THAT(document, HasSubstr("tests=\"2\" failures=\"0\" errors=\"1\""));
  EXPECT_THAT(document, HasSubstr("<testcase name=\"the run as a whole\" classname=\"diags\" "
                                  "time=\"0.000\">\n<error message=\"The stream ends.\""));
}

TEST(JUnitWriter, ARunIsAnErrorByItselfOnlyWhereNoTestSaysSo) {
  for (const Outcome end : {Outcome::kPassed, Outcome::kWarned, Outcome::kSkipped}) {
    EventList run;
    run.begin(1).end(1, end).end(0, end);
    EXPECT_THAT(junitOf(run), Not(HasSubstr("the run as a whole")));
  }
  for (const Outcome test : {Outcome::kFailed, Outcome::kAborted, Outcome::kBroken}) {
    EventList run;
    run.begin(1).end(1, test).end(0, Outcome::kAborted);
    EXPECT_THAT(junitOf(run), Not(HasSubstr("the run as a whole")));
  }
}

TEST(JUnitWriter, NothingIsWrittenBeforeTheEnd) {
  EventList run;
  run.begin(1).end(1, Outcome::kPassed);
  EXPECT_EQ(junitOf(run), "");
}

TEST(JUnitWriter, AFloodIsCutAndTheDocumentStaysSmall) {
  EventList run;
  run.begin(1);
  for (int line = 0; line < 20'000; ++line) {
    run.add(1, engine::OutputLine{engine::Stream::kOutput, "flood", false});
  }
  run.end(1, Outcome::kPassed).end(0, Outcome::kPassed);
  const std::string document = junitOf(run);
  EXPECT_LT(document.size(), 5 * LongText::kHalf);
  EXPECT_THAT(document, HasSubstr("bytes are left out]"));
}

}  // namespace
}  // namespace reports
