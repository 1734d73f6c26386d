#include <gtest/gtest.h>

#include <vector>

#include "host/Verdict.h"

namespace host {
namespace {

struct VerdictRow {
  const char* answer;
  Verdict verdict;
};

TEST(Verdict, EachAnswerOfARunHasOne) {
  const VerdictRow rows[] = {
      {"Pass", Verdict::kPass},
      {"Fail", Verdict::kFail},
      {"Aborted", Verdict::kAborted},
      {"Incomplete", Verdict::kIncomplete},
      {"", Verdict::kNoRecord},
      {"No Results.\n", Verdict::kNoRecord},
      {"No Status\n", Verdict::kNoRecord},
      {"No matching diagnostic test or device found.\n", Verdict::kNoRecord},
      {" No matching diagnostic test or device found.\n", Verdict::kNoRecord},
      {"pass", Verdict::kNoRecord},
  };
  for (const VerdictRow& row : rows) {
    EXPECT_EQ(verdictOf(row.answer), row.verdict) << '"' << row.answer << '"';
  }
}

TEST(Verdict, TrimmingTakesBlanksAndLineEndsOffBothEnds) {
  EXPECT_EQ(trimmed(" \tNo Status \r\n"), "No Status");
  EXPECT_EQ(trimmed(" \n"), "");
  EXPECT_EQ(trimmed(""), "");
}

struct TallyRow {
  std::vector<Verdict> verdicts;
  ExitStatus status;
  const char* summary;
};

TEST(Tally, AHardwareFaultOutweighsARunWithoutAVerdict) {
  const TallyRow rows[] = {
      {{}, ExitStatus::kNothingToRun, "0 tests: 0 passed, 0 failed, 0 without a verdict"},
      {{Verdict::kPass}, ExitStatus::kPassed, "1 test: 1 passed, 0 failed, 0 without a verdict"},
      {{Verdict::kPass, Verdict::kFail},
       ExitStatus::kFailed,
       "2 tests: 1 passed, 1 failed, 0 without a verdict"},
      {{Verdict::kPass, Verdict::kAborted},
       ExitStatus::kCouldNotRun,
       "2 tests: 1 passed, 0 failed, 1 without a verdict"},
      {{Verdict::kIncomplete},
       ExitStatus::kCouldNotRun,
       "1 test: 0 passed, 0 failed, 1 without a verdict"},
      {{Verdict::kNoRecord, Verdict::kFail, Verdict::kAborted},
       ExitStatus::kFailed,
       "3 tests: 0 passed, 1 failed, 2 without a verdict"},
  };
  for (const TallyRow& row : rows) {
    Tally tally;
    for (const Verdict verdict : row.verdicts) tally.add(verdict);
    EXPECT_EQ(tally.status(), row.status) << row.summary;
    EXPECT_EQ(tally.summary(), row.summary);
  }
}

TEST(Tally, AProviderThatCannotBeUsedOutweighsThePassesAlone) {
  Tally none;
  none.addUnusableProvider();
  EXPECT_EQ(none.status(), ExitStatus::kCouldNotRun);
  Tally passed;
  passed.add(Verdict::kPass);
  passed.addUnusableProvider();
  EXPECT_EQ(passed.status(), ExitStatus::kCouldNotRun);
  passed.add(Verdict::kFail);
  EXPECT_EQ(passed.status(), ExitStatus::kFailed);
}

}  // namespace
}  // namespace host
