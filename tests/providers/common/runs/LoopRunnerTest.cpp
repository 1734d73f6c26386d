#include <gtest/gtest.h>

#include "providers/common/runs/LoopRunner.h"
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

class LookingTest : public LoopRunnerTest {
 protected:
  /// A pass takes no time at all; only pauses do.
  Outcome look(double seconds) {
    diagnostic.describe().secondsBetweenPasses = seconds;
    return runLoops(
        diagnostic, diagnostic.devices()[0], settings, control, [this] { return now; },
        [this](double pause) {
          ++pauses;
          now += static_cast<std::int64_t>(pause * 1e6 + 0.5);
        });
  }

  int pauses = 0;
};

TEST_F(LookingTest, WhatOnlyLooksLooksOnceAPeriodUntilTheTimeIsOver) {
  settings.loop.seconds = 5;
  look(2);
  EXPECT_EQ(diagnostic.runs(), 3U) << "at 0, 2 and 4 s";
  EXPECT_EQ(now, 5'000'000);
}

TEST_F(LookingTest, WhatOnlyLooksTakesNoPauseWhereItsPassesAreCounted) {
  settings.loop.count = 3;
  look(2);
  EXPECT_EQ(diagnostic.runs(), 3U);
  EXPECT_EQ(pauses, 0);
}

TEST_F(LookingTest, ASinglePassIsFollowedByNoPause) {
  look(2);
  EXPECT_EQ(pauses, 0);
}

TEST_F(LookingTest, AStopEndsThePauseBetweenTwoPasses) {
  settings.loop.continuous = true;
  control.stopAfter(3);
  EXPECT_EQ(look(3600).state, CompletionState::Stopped);
  EXPECT_EQ(diagnostic.runs(), 1U);
  EXPECT_LT(now, 1'000'000);
}

TEST_F(LookingTest, APauseBecomesNoLongerWhenTheClockIsSetBack) {
  settings.loop.continuous = true;
  now = 7'200'000'000;
  diagnostic.onRun([this](RunControl&) {
    if (diagnostic.runs() == 1) now -= 3'600'000'000;
    if (diagnostic.runs() == 2) control.stopAfter(0);
  });
  look(2);
  EXPECT_LE(pauses, 41);
}

TEST_F(LoopRunnerTest, WhatEveryPassFindsAgainIsNotedOnce) {
  settings.loop.count = 100;
  Outcome pass = failureWith(1);
  pass.notes = {{RecordType::DeviceErrors, "blade 1\n", {{"E1", 2}}},
                {RecordType::DeviceErrors, "blade 2\n", {}}};
  diagnostic.script({pass});
  const Outcome outcome = run();
  ASSERT_EQ(outcome.notes.size(), 2U);
  EXPECT_EQ(outcome.notes[0].text, "blade 1\n");
  ASSERT_EQ(outcome.notes[0].errors.size(), 1U);
  EXPECT_EQ(outcome.notes[0].errors[0].count, 200U);
}

TEST_F(LoopRunnerTest, TheSameWordsOfAnotherPartAreAnotherNote) {
  settings.loop.count = 2;
  Outcome first = failureWith(1);
  first.notes = {{RecordType::DeviceErrors, "broken\n", {}, {}, {"Blade 1", {}, {}}}};
  Outcome second = first;
  second.notes[0].part.name = "Blade 2";
  diagnostic.script({first, second});
  EXPECT_EQ(run().notes.size(), 2U);
}

TEST_F(LoopRunnerTest, AsManyNotesAreKeptAsARunCanTell) {
  settings.loop.count = 1100;
  std::vector<Outcome> passes;
  for (int i = 0; i < 1100; ++i) {
    passes.push_back(failureWith(1));
    passes.back().notes = {{RecordType::DeviceErrors, std::to_string(i), {}}};
  }
  diagnostic.script(passes);
  const Outcome outcome = run();
  EXPECT_EQ(outcome.notes.size(), 1000U);
  EXPECT_NE(outcome.text.find("\nNot noted one by one: 100 further findings\n"), std::string::npos);
  EXPECT_EQ(outcome.errors[0].count, 1100U);
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

struct VerdictRow {
  const char* name;
  std::vector<CompletionState> passes;
  CompletionState verdict;
  const char* text;  ///< of which pass
};

TEST_F(LoopRunnerTest, TheWorstPassGivesVerdictTextAndSummary) {
  using State = CompletionState;
  for (const VerdictRow& row :
       {VerdictRow{"good", {State::Ok, State::Ok}, State::Ok, "1"},
        VerdictRow{"OK, then a Warning", {State::Ok, State::Warning}, State::Warning, "2"},
        VerdictRow{"Warning, then OK", {State::Warning, State::Ok}, State::Warning, "1"},
        VerdictRow{"two Warnings", {State::Warning, State::Warning}, State::Warning, "1"},
        VerdictRow{"Warning, then Failed", {State::Warning, State::Failed}, State::Failed, "2"},
        VerdictRow{"Failed, then Warning", {State::Failed, State::Warning}, State::Failed, "1"},
        VerdictRow{"Failed, then OK", {State::Failed, State::Ok}, State::Failed, "1"},
        VerdictRow{"OK, then Stopped", {State::Ok, State::Stopped}, State::Stopped, "1"},
        VerdictRow{"Warning, then Stopped", {State::Warning, State::Stopped}, State::Stopped, "1"},
        VerdictRow{"Warning, then Aborted", {State::Warning, State::Aborted}, State::Aborted, "2"},
        VerdictRow{"Failed, then Stopped", {State::Failed, State::Stopped}, State::Failed, "1"},
        VerdictRow{
            "Failed, then Incomplete", {State::Failed, State::Incomplete}, State::Failed, "1"}}) {
    std::vector<Outcome> passes;
    for (const State state : row.passes) {
      passes.push_back(outcomeOf(state, std::to_string(passes.size() + 1) + "\n"));
      passes.back().summary = "pass " + std::to_string(passes.size());
    }
    FakeDiagnostic fans;
    fans.script(passes);
    settings.loop.count = 2;
    const Outcome outcome = runLoops(fans, fans.devices()[0], settings, control, [] { return 0; });
    EXPECT_EQ(outcome.state, row.verdict) << row.name;
    EXPECT_EQ(outcome.text.substr(0, 2), row.text + std::string("\n")) << row.name;
    EXPECT_EQ(outcome.summary, row.text ? "pass " + std::string(row.text) : "") << row.name;
  }
}

TEST_F(LoopRunnerTest, AWarningIsAPassThatPassed) {
  settings.loop.count = 2;
  diagnostic.script({outcomeOf(CompletionState::Ok), outcomeOf(CompletionState::Warning)});
  const Outcome outcome = run();
  EXPECT_EQ(outcome.loopsPassed, 2U);
  EXPECT_EQ(outcome.loopsFailed, 0U);
}

TEST_F(LoopRunnerTest, APassThatDidNotEndIsNotCounted) {
  settings.loop.count = 3;
  for (const CompletionState state : {CompletionState::Stopped, CompletionState::Aborted}) {
    FakeDiagnostic fans;
    fans.script({outcomeOf(state)});
    const Outcome outcome = runLoops(fans, fans.devices()[0], settings, control, [] { return 0; });
    EXPECT_EQ(fans.runs(), 1U);
    EXPECT_EQ(outcome.text, "done\nLoops: 0 passed, 0 failed\n");
  }
}

// Catches a night's passes of which the record says that nothing was tested, as the last one was
// stopped when it had only begun.
TEST_F(LoopRunnerTest, PassesThatEndedAreNotHiddenByOneThatWasStopped) {
  settings.loop.count = 3;
  diagnostic.script({outcomeOf(CompletionState::Ok, "all of it\n"),
                     outcomeOf(CompletionState::Stopped, "none\n")});
  EXPECT_EQ(run().text,
            "all of it\nThe next pass was stopped before its end\nLoops: 1 passed, 0 failed\n");
}

TEST_F(LoopRunnerTest, ErrorsAreAddedUpByCodeAndNotesAreKept) {
  settings.loop.count = 2;
  Outcome second = outcomeOf(CompletionState::Failed);
  second.errors = {{"E2", 5}, {"E1", 1}};
  second.notes = {{RecordType::DeviceErrors, "second\n", {}}};
  Outcome first = failureWith(3);
  first.notes = {{RecordType::DeviceErrors, "first\n", {}}};
  diagnostic.script({first, second});
  const Outcome outcome = run();
  ASSERT_EQ(outcome.errors.size(), 2U);
  EXPECT_EQ(outcome.errors[0].code, "E1");
  EXPECT_EQ(outcome.errors[0].count, 4U);
  EXPECT_EQ(outcome.errors[1].code, "E2");
  EXPECT_EQ(outcome.errors[1].count, 5U);
  ASSERT_EQ(outcome.notes.size(), 2U);
  EXPECT_EQ(outcome.notes[0].text, "first\n");
  EXPECT_EQ(outcome.notes[1].text, "second\n");
}

TEST_F(LoopRunnerTest, MoreErrorsThanCanBeCountedAreTheMostThatCanBe) {
  settings.loop.count = 2;
  diagnostic.script({failureWith(0xFFFFFFFF), failureWith(2)});
  EXPECT_EQ(run().errors[0].count, 0xFFFFFFFFU);
}

TEST_F(LoopRunnerTest, AsManyErrorsAsAllowedDoNotEndTheRun) {
  settings.loop.limitErrors = true;
  settings.loop.errors = 2;
  diagnostic.script({failureWith(2), failureWith(1)});
  run();
  EXPECT_EQ(diagnostic.runs(), 2U);
}

TEST_F(LoopRunnerTest, WithoutALimitOfErrorsTheyDoNotEndTheRun) {
  settings.loop.count = 3;
  diagnostic.script({failureWith(2)});
  run();
  EXPECT_EQ(diagnostic.runs(), 3U);
}

TEST_F(LoopRunnerTest, ATimedRunProgressesWithTheTime) {
  settings.loop.seconds = 8;
  diagnostic.onRun([](RunControl& pass) { pass.progress(0.5); });
  run();
  ASSERT_GE(control.fractions().size(), 2U);
  EXPECT_DOUBLE_EQ(control.fractions()[0], 0.125);
  EXPECT_DOUBLE_EQ(control.fractions()[1], 0.375);
}

TEST_F(LoopRunnerTest, TheNearerOfTwoLimitsIsShown) {
  settings.loop.seconds = 8;
  settings.loop.count = 2;
  diagnostic.onRun([](RunControl& pass) { pass.progress(0.5); });
  run();
  EXPECT_EQ(control.fractions(), (std::vector<double>{0.25, 0.75}));
}

TEST_F(LoopRunnerTest, ARunWithALimitOfErrorsComesCloserWithoutArriving) {
  settings.loop.limitErrors = true;
  diagnostic.onRun([](RunControl& pass) { pass.progress(1); });
  diagnostic.script({failureWith(1)});
  run();
  EXPECT_EQ(control.fractions(), (std::vector<double>{0.5}));
}

TEST_F(LoopRunnerTest, ASinglePassTellsItsOwnProgress) {
  diagnostic.onRun([](RunControl& pass) {
    pass.progress(0.25);
    pass.status("Turning");
  });
  run();
  EXPECT_EQ(control.fractions(), (std::vector<double>{0.25}));
  EXPECT_EQ(control.texts(), (std::vector<std::string>{"Turning"}));
}

TEST_F(LoopRunnerTest, AStopOfASinglePassIsTheDiagnosticsAffair) {
  control.stopAfter(0);
  EXPECT_EQ(run().state, CompletionState::Ok) << "it had ended already";
}

TEST_F(LoopRunnerTest, AnIncompletePassEndsTheRun) {
  settings.loop.count = 3;
  diagnostic.script({outcomeOf(CompletionState::Ok), outcomeOf(CompletionState::Incomplete)});
  EXPECT_EQ(run().state, CompletionState::Incomplete);
  EXPECT_EQ(diagnostic.runs(), 2U);
}

TEST_F(LoopRunnerTest, WhatThePassesMeasuredIsPutTogetherWithTheirNumber) {
  settings.loop.count = 2;
  Outcome slow = outcomeOf(CompletionState::Ok);
  slow.measured = {{"Speed", 800, {}, true, Fold::Least}, {"Turns", 10}};
  Outcome fast = outcomeOf(CompletionState::Failed);
  fast.measured = {{"Speed", 900, {}, true, Fold::Least}, {"Turns", 20}};
  diagnostic.script({slow, fast});
  const ResultText text = resultText(run().measured);
  EXPECT_EQ(text.format,
            "|uint64 Speed|uint64 Turns|uint64 LoopsPassed|uint64 LoopsFailed|real64 "
            "LoopsFailedMaximum");
  EXPECT_EQ(text.data, "|800|30|1|1|0.000");
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

TEST(LoopRunnerRepair, IsThatOfTheWorstPass) {
  FakeDiagnostic diagnostic;
  Outcome wobbling = outcomeOf(CompletionState::Warning);
  wobbling.correctiveAction = "Tighten blade 3.\n";
  Outcome broken = failureWith(1);
  broken.correctiveAction = "Replace the fan.\n";
  broken.part = {"Blade 2", {}, "B-17"};
  diagnostic.script({wobbling, broken, outcomeOf(CompletionState::Ok)});
  RunSettings settings;
  settings.loop.count = 3;
  FakeControl control;
  const Outcome outcome =
      runLoops(diagnostic, {}, settings, control, [] { return std::int64_t{0}; });
  EXPECT_EQ(outcome.correctiveAction, "Replace the fan.\n");
  EXPECT_EQ(outcome.part.serialNumber, "B-17");
}

}  // namespace
}  // namespace providers
