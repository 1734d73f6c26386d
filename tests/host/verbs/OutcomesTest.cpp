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
};

TEST(Outcomes, AHardwareFaultOutweighsATestThatCouldNotFinish) {
  const OutcomesRow rows[] = {
      {{}, ExitStatus::kNothingToRun},
      {{Outcome::kPassed}, ExitStatus::kPassed},
      {{Outcome::kWarned}, ExitStatus::kPassed},
      {{Outcome::kPassed, Outcome::kFailed}, ExitStatus::kFailed},
      {{Outcome::kPassed, Outcome::kAborted}, ExitStatus::kCouldNotRun},
      {{Outcome::kIncomplete}, ExitStatus::kCouldNotRun},
      {{Outcome::kBroken, Outcome::kFailed, Outcome::kAborted}, ExitStatus::kFailed},
      {{Outcome::kPassed, Outcome::kSkipped}, ExitStatus::kPassed},
      {{Outcome::kSkipped}, ExitStatus::kNothingToRun},
  };
  for (const OutcomesRow& row : rows) {
    const engine::RunSummary summary = summaryWith(row.outcomes);
    EXPECT_EQ(statusOf(summary, true), row.status) << row.outcomes.size();
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
