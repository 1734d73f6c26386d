#include <gtest/gtest.h>

#include "engine/worker/tasks/RunAnswer.h"

namespace engine::tasks {
namespace {

RunAnswer answerWith(const std::string& text) {
  RunAnswer answer;
  answer.text = text;
  return answer;
}

struct AnswerRow {
  const char* text;
  Outcome outcome;
  const char* error;  ///< empty for none
};

TEST(RunAnswer, EveryAnswerOfTheRunnerIsToldApart) {
  const AnswerRow rows[] = {
      {"Pass", Outcome::kPassed, ""},
      {"Fail", Outcome::kFailed, ""},
      {"Aborted", Outcome::kAborted, ""},
      {"Incomplete", Outcome::kIncomplete, ""},
      {"", Outcome::kBroken, "the test did not start"},
      {"No Status\n", Outcome::kBroken,
       "No Status: the service started no job; another run may be going on with the same device"},
      {"No Results.\n", Outcome::kBroken,
       "No Results.: the test ended, and left no record that can be read"},
      {"No matching diagnostic test or device found.\n", Outcome::kBroken,
       "No matching diagnostic test or device found: no provider offers this test any more"},
      {" No matching diagnostic test or device found.\n", Outcome::kBroken,
       "No matching diagnostic test or device found: its service and its device are not found "
       "together any more"},
      {"pass", Outcome::kBroken, "pass"},
  };
  for (const AnswerRow& row : rows) {
    const RunAnswer answer = answerWith(row.text);
    EXPECT_EQ(endOf(answer).outcome, row.outcome) << row.text;
    const auto error = errorOf(answer);
    EXPECT_EQ(error ? error->text : "", row.error);
  }
}

/// The runner waits for a record that a provider cannot give, and says no more than that it has
/// none.
TEST(RunAnswer, WhatAProviderThrewIsWhyThereIsNoVerdict) {
  RunAnswer answer = answerWith("No Results.\n");
  answer.thrown = {"AcmeProvider", "enumerateInstances: an exception came"};
  const auto error = errorOf(answer);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->cause, Cause::kException);
  EXPECT_EQ(error->provider, "AcmeProvider");
  EXPECT_EQ(error->text,
            "No Results.: the test ended, and left no record that can be read; enumerateInstances: "
            "an exception came");
  answer.text = "Pass";
  EXPECT_FALSE(errorOf(answer));
}

TEST(RunAnswer, ATestThatWasStoppedIsNeverFaultyHardware) {
  RunAnswer answer = answerWith("Fail");
  answer.wasStopped = true;
  EXPECT_EQ(endOf(answer).outcome, Outcome::kAborted);
  answer.text = "No Results.\n";
  EXPECT_EQ(endOf(answer).outcome, Outcome::kAborted);
  EXPECT_FALSE(errorOf(answer));
  answer.text = "Pass";
  EXPECT_EQ(endOf(answer).outcome, Outcome::kPassed) << "it had ended by itself";
}

TEST(RunAnswer, ARecordWithAWarningIsAPassWithOne) {
  RunAnswer answer = answerWith("Pass");
  answer.state = "Warning";
  EXPECT_EQ(endOf(answer).outcome, Outcome::kWarned);
  answer.text = "Incomplete";
  EXPECT_EQ(endOf(answer).outcome, Outcome::kIncomplete);
}

struct WarningRow {
  const char* recordClass;
  bool wasStopped;
  Outcome outcome;
  const char* text;
  const char* brief;
};

// Catches a corrected error, or a link that is slower than it could be, shown as broken hardware.
TEST(RunAnswer, AWarningOfATestOfOurOwnIsNoFailure) {
  for (const WarningRow& row :
       {WarningRow{"DIAGS_PcieDiagnosticCompletionRecord", false, Outcome::kWarned, "Warning",
                   "(Warning)"},
        WarningRow{"DIAGS_PcieDiagnosticCompletionRecord", true, Outcome::kAborted, "Fail",
                   "(Fail)"},
        WarningRow{"ACME_Record", false, Outcome::kFailed, "Fail", "(Fail)"},
        WarningRow{"", false, Outcome::kFailed, "Fail", "(Fail)"}}) {
    RunAnswer answer = answerWith("Fail");
    answer.state = "Warning";
    answer.brief = "(Fail)";
    answer.recordClass = row.recordClass;
    answer.wasStopped = row.wasStopped;
    const Ended ended = endOf(answer);
    EXPECT_EQ(ended.outcome, row.outcome) << row.recordClass;
    EXPECT_EQ(ended.text, row.text) << row.recordClass;
    EXPECT_EQ(ended.brief, row.brief) << row.recordClass;
  }
}

TEST(RunAnswer, AFailureOfATestOfOurOwnStaysOne) {
  RunAnswer answer = answerWith("Fail");
  answer.state = "Failed";
  answer.recordClass = "DIAGS_PcieDiagnosticCompletionRecord";
  EXPECT_EQ(endOf(answer).outcome, Outcome::kFailed);
}

struct DoubtRow {
  const char* recordClass;
  Outcome before;
  Outcome after;
};

TEST(RunAnswer, OnlyAPassOfATestOfOurOwnIsDoubted) {
  const DoubtRow rows[] = {
      {"DIAGS_MemoryTestCompletionRecord", Outcome::kPassed, Outcome::kWarned},
      {"DIAGS_MemoryTestCompletionRecord", Outcome::kWarned, Outcome::kWarned},
      {"DIAGS_MemoryTestCompletionRecord", Outcome::kFailed, Outcome::kFailed},
      {"DIAGS_MemoryTestCompletionRecord", Outcome::kAborted, Outcome::kAborted},
      {"DIAGS_MemoryTestCompletionRecord", Outcome::kIncomplete, Outcome::kIncomplete},
      {"DIAGS_MemoryTestCompletionRecord", Outcome::kBroken, Outcome::kBroken},
      {"ACME_Record", Outcome::kPassed, Outcome::kPassed},
      {"ACME_DIAGS_Record", Outcome::kPassed, Outcome::kPassed},
      {"DIAGSX_Record", Outcome::kPassed, Outcome::kPassed},
      {"", Outcome::kPassed, Outcome::kPassed},
  };
  for (const DoubtRow& row : rows) {
    RunAnswer answer = answerWith("Pass");
    answer.recordClass = row.recordClass;
    Ended ended;
    ended.outcome = row.before;
    ended.text = "Pass";
    doubt(ended, answer);
    EXPECT_EQ(ended.outcome, row.after) << row.recordClass;
    EXPECT_EQ(ended.text, "Pass") << "the runner's own word stays";
  }
}

TEST(RunAnswer, AnExceptionIsTheCause) {
  RunAnswer answer;
  answer.exception = "not found: the fan";
  ASSERT_TRUE(errorOf(answer));
  EXPECT_EQ(errorOf(answer)->cause, Cause::kException);
  EXPECT_EQ(errorOf(answer)->text, "not found: the fan");
}

}  // namespace
}  // namespace engine::tasks
