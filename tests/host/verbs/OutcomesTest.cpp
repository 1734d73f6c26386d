#include <gtest/gtest.h>

#include <vector>

#include "host/verbs/Outcomes.h"

namespace host {
namespace {

using engine::Outcome;

engine::RunSummary summaryWith(const std::vector<Outcome>& outcomes) {
  engine::RunSummary summary;
  for (const Outcome outcome : outcomes) ++summary.outcomes[outcome];
  return summary;
}

struct OutcomesRow {
  std::vector<Outcome> outcomes;
  ExitStatus status;
  const char* summary;
};

TEST(Outcomes, AHardwareFaultOutweighsATestThatCouldNotFinish) {
  const OutcomesRow rows[] = {
      {{}, ExitStatus::kNothingToRun, "0 tests: 0 passed, 0 failed, 0 without a verdict"},
      {{Outcome::kPassed}, ExitStatus::kPassed, "1 test: 1 passed, 0 failed, 0 without a verdict"},
      {{Outcome::kWarned}, ExitStatus::kPassed, "1 test: 1 passed, 0 failed, 0 without a verdict"},
      {{Outcome::kPassed, Outcome::kFailed},
       ExitStatus::kFailed,
       "2 tests: 1 passed, 1 failed, 0 without a verdict"},
      {{Outcome::kPassed, Outcome::kAborted},
       ExitStatus::kCouldNotRun,
       "2 tests: 1 passed, 0 failed, 1 without a verdict"},
      {{Outcome::kIncomplete},
       ExitStatus::kCouldNotRun,
       "1 test: 0 passed, 0 failed, 1 without a verdict"},
      {{Outcome::kBroken, Outcome::kFailed, Outcome::kAborted},
       ExitStatus::kFailed,
       "3 tests: 0 passed, 1 failed, 2 without a verdict"},
      {{Outcome::kPassed, Outcome::kSkipped},
       ExitStatus::kPassed,
       "1 test: 1 passed, 0 failed, 0 without a verdict, 1 skipped"},
      {{Outcome::kSkipped},
       ExitStatus::kNothingToRun,
       "0 tests: 0 passed, 0 failed, 0 without a verdict, 1 skipped"},
  };
  for (const OutcomesRow& row : rows) {
    const engine::RunSummary summary = summaryWith(row.outcomes);
    EXPECT_EQ(statusOf(summary, true), row.status) << row.summary;
    EXPECT_EQ(summaryOf(summary), row.summary);
  }
}

TEST(Outcomes, AProviderThatCannotBeUsedOutweighsThePassesAlone) {
  EXPECT_EQ(statusOf(summaryWith({}), false), ExitStatus::kCouldNotRun);
  EXPECT_EQ(statusOf(summaryWith({Outcome::kPassed}), false), ExitStatus::kCouldNotRun);
  EXPECT_EQ(statusOf(summaryWith({Outcome::kFailed}), false), ExitStatus::kFailed);
}

TEST(Outcomes, AnInterruptedRunSaysSoUnlessATestFailed) {
  engine::RunSummary summary = summaryWith({Outcome::kPassed, Outcome::kAborted});
  summary.wasCancelled = true;
  EXPECT_EQ(statusOf(summary, true), ExitStatus::kInterrupted);
  ++summary.outcomes[Outcome::kFailed];
  EXPECT_EQ(statusOf(summary, true), ExitStatus::kFailed);
}

TEST(Outcomes, ARunWhoseTimeWasUpIsNotWhole) {
  engine::RunSummary summary = summaryWith({Outcome::kPassed});
  summary.isTimeUp = true;
  EXPECT_EQ(statusOf(summary, true), ExitStatus::kCouldNotRun);
}

}  // namespace
}  // namespace host
