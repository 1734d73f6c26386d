#include <gtest/gtest.h>

#include "host/display/Wording.h"

namespace host {
namespace {

using engine::Outcome;

struct VerdictRow {
  const char* name;
  engine::Ended end;
  Level level;
  const char* text;
};

const VerdictRow kVerdicts[] = {
    {"simple", {Outcome::kPassed, "Pass", 1, "(Pass)", "", "r"}, Level::kSimple, "(Pass)"},
    {"simple with a remark",
     {Outcome::kPassed, "Pass", 1, "(Pass)", "1 of 2", "r"},
     Level::kSimple,
     "(Pass) - 1 of 2"},
    {"simple without a record", {Outcome::kBroken, "", 1, "", "", ""}, Level::kSimple, "none"},
    {"immediate",
     {Outcome::kPassed, "Pass", 1, "(Pass)", "1 of 2", "r"},
     Level::kImmediate,
     "Pass - 1 of 2"},
    {"extended leaves the remark to the record",
     {Outcome::kFailed, "Fail", 1, "(Fail)", "x", "r"},
     Level::kExtended,
     "Fail"},
    {"extended without a record",
     {Outcome::kFailed, "Fail", 1, "(Fail)", "x", ""},
     Level::kExtended,
     "Fail - x"},
    {"a warning is seen",
     {Outcome::kWarned, "Pass", 1, "(Pass)", "x", ""},
     Level::kImmediate,
     "Pass (warning) - x"},
    {"a test's own warning, which the runner has no word for",
     {Outcome::kWarned, "Warning", 1, "(Warning)", "x", ""},
     Level::kImmediate,
     "Warning - x"},
    {"stopped", {Outcome::kAborted, "Aborted", 1, "", "", ""}, Level::kImmediate, "Aborted"},
    {"without words", {Outcome::kIncomplete, "", 1, "", "", ""}, Level::kImmediate, "Incomplete"},
    {"no verdict",
     {Outcome::kBroken, "no such test", 1, "", "", ""},
     Level::kImmediate,
     "none - no such test"},
    {"skipped, and why",
     {Outcome::kSkipped, "it writes", 0, "", "", ""},
     Level::kImmediate,
     "skipped - it writes"},
};

TEST(DisplayWording, AVerdictSaysWhatItsLevelAsksFor) {
  for (const VerdictRow& row : kVerdicts) {
    EXPECT_EQ(verdictText(row.end, row.level), row.text) << row.name;
  }
}

struct DetailRow {
  engine::Body body;
  const char* text;
};

const DetailRow kDetails[] = {
    {engine::StepStarted{"Walking ones"}, "Step: Walking ones"},
    {engine::OutputLine{engine::Stream::kOutput, "x", false}, "Output: x"},
    {engine::OutputLine{engine::Stream::kError, "x", false}, "Error output: x"},
    {engine::LogLine{0, "x"}, "Log: error: x"},
    {engine::LogLine{3, "x"}, "Log: trace: x"},
    {engine::LogLine{-7, "x"}, "Log: trace: x"},
    {engine::Message{engine::Severity::kWarning, "x", {"a", "b"}},
     "Message: warning: x\nTo do: a\nTo do: b"},
    {engine::Measurement{"read", 1.5, "MB/s", 1.0, 2.0, "sda"},
     "Measured: sda: read: 1.5 MB/s (at least 1, at most 2)"},
    {engine::Measurement{"locked", true, "", {}, {}, ""}, "Measured: locked: yes"},
    {engine::Measurement{"mode", std::string("fast"), "", {}, 2.0, ""},
     "Measured: mode: fast (at most 2)"},
    {engine::Progress{4}, ""},
    {engine::RunStarted{}, ""},
};

TEST(DisplayWording, EachKindOfDetailHasItsWord) {
  for (const DetailRow& row : kDetails) EXPECT_EQ(detailText(row.body), row.text);
}

TEST(DisplayWording, AFindingNamesThePartAndWhatToDo) {
  EXPECT_EQ(findingText({engine::Verdict::kFail, "bit 5", "DIMM 2", {"Replace it."}}),
            "Fault: DIMM 2: bit 5\nTo do: Replace it.");
  EXPECT_EQ(findingText({engine::Verdict::kUnknown, "bit 5", "", {}}), "Found: bit 5");
}

TEST(DisplayWording, AnErrorSaysWhereItHappened) {
  EXPECT_EQ(errorText({engine::Cause::kCrashed, "signal 11\n", 11, "P", "start", {}}),
            "signal 11 (in P: start)");
  EXPECT_EQ(errorText({engine::Cause::kTimedOut, "", 0, "", "", {}}), "timedOut");
}

std::string summaryOf(std::initializer_list<Outcome> outcomes) {
  Summary summary;
  for (const Outcome outcome : outcomes) summary.add(outcome);
  return summary.text();
}

TEST(DisplayWording, TheSummaryCounts) {
  EXPECT_EQ(summaryOf({Outcome::kPassed}), "1 test: 1 passed, 0 failed, 0 without a verdict");
  EXPECT_EQ(summaryOf({Outcome::kWarned, Outcome::kFailed, Outcome::kAborted, Outcome::kBroken,
                       Outcome::kIncomplete, Outcome::kSkipped}),
            "6 tests: 1 passed, 1 failed, 3 without a verdict, 1 skipped");
}

}  // namespace
}  // namespace host
