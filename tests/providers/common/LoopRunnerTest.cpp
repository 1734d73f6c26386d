#include <gtest/gtest.h>

#include "providers/common/LoopRunner.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/FakeDiagnostic.h"

namespace providers {
namespace {

class LoopRunnerTest : public ::testing::Test {
 protected:
  Outcome run() {
    return runLoops(diagnostic, diagnostic.devices()[0], settings, control,
                    [this] { return now += 1'000'000; });
  }

  std::int64_t now = 0;
  FakeDiagnostic diagnostic;
  FakeControl control;
  RunSettings settings;
};

TEST_F(LoopRunnerTest, WithoutLoopControlThereIsOnePass) {
  const Outcome outcome = run();
  EXPECT_EQ(diagnostic.runs(), 1U);
  EXPECT_EQ(outcome.loopsPassed, 1U);
  EXPECT_EQ(outcome.text, "done\n");
}

TEST_F(LoopRunnerTest, ACountRepeatsThePassSoOften) {
  settings.loop.count = 3;
  const Outcome outcome = run();
  EXPECT_EQ(diagnostic.runs(), 3U);
  EXPECT_EQ(outcome.text, "done\nLoops: 3 passed, 0 failed\n");
}

TEST_F(LoopRunnerTest, ProgressIsSpreadOverAllPasses) {
  settings.loop.count = 4;
  diagnostic.onRun([](RunControl& pass) { pass.progress(0.5); });
  run();
  EXPECT_EQ(control.fractions(), (std::vector<double>{0.125, 0.375, 0.625, 0.875}));
}

TEST_F(LoopRunnerTest, AnEndlessRunComesCloserWithoutArriving) {
  settings.loop.continuous = true;
  diagnostic.onRun([](RunControl& pass) { pass.progress(1); });
  control.stopAfter(2);
  run();
  ASSERT_EQ(control.fractions().size(), 3U);
  EXPECT_DOUBLE_EQ(control.fractions()[0], 0.5);
  EXPECT_DOUBLE_EQ(control.fractions()[1], 2.0 / 3);
  EXPECT_DOUBLE_EQ(control.fractions()[2], 0.75);
}

TEST_F(LoopRunnerTest, ATimerEndsTheRunAfterThePassThatIsUnderWay) {
  settings.loop.seconds = 3;
  run();
  EXPECT_EQ(diagnostic.runs(), 3U);
}

TEST_F(LoopRunnerTest, MoreErrorsThanTheLimitEndTheRun) {
  settings.loop.limitErrors = true;
  settings.loop.errors = 4;
  diagnostic.script({failureWith(2)});
  const Outcome outcome = run();
  EXPECT_EQ(diagnostic.runs(), 3U);
  ASSERT_EQ(outcome.errors.size(), 1U);
  EXPECT_EQ(outcome.errors[0].count, 6U);
  EXPECT_EQ(outcome.loopsFailed, 3U);
}

TEST_F(LoopRunnerTest, AnErrorEndsTheRunWhereThatIsWanted) {
  settings.loop.count = 5;
  settings.haltOnError = true;
  diagnostic.script({outcomeOf(CompletionState::Ok), failureWith(1)});
  EXPECT_EQ(run().loopsFailed, 1U);
  EXPECT_EQ(diagnostic.runs(), 2U);
}

TEST_F(LoopRunnerTest, OneFailedPassFailsTheRunWithItsText) {
  settings.loop.count = 3;
  diagnostic.script(
      {outcomeOf(CompletionState::Ok), failureWith(1), outcomeOf(CompletionState::Ok)});
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_EQ(outcome.text, "broken\nLoops: 2 passed, 1 failed\n");
}

TEST_F(LoopRunnerTest, AnIncompletePassEndsTheRun) {
  settings.loop.count = 3;
  diagnostic.script({outcomeOf(CompletionState::Ok), outcomeOf(CompletionState::Incomplete)});
  EXPECT_EQ(run().state, CompletionState::Incomplete);
  EXPECT_EQ(diagnostic.runs(), 2U);
}

TEST_F(LoopRunnerTest, AStopBetweenTwoPassesIsAStop) {
  settings.loop.continuous = true;
  control.stopAfter(0);
  EXPECT_EQ(run().state, CompletionState::Stopped);
}

TEST_F(LoopRunnerTest, AStopDoesNotHideAFailure) {
  settings.loop.continuous = true;
  control.stopAfter(0);
  diagnostic.script({failureWith(1)});
  EXPECT_EQ(run().state, CompletionState::Failed);
}

}  // namespace
}  // namespace providers
