#include <gtest/gtest.h>

#include <regex>

#include "providers/common/runs/JobRegistry.h"
#include "tests/providers/common/FakeDiagnostic.h"

namespace providers {
namespace {

constexpr std::int64_t kSecond = 1'000'000;

class JobRegistryTest : public ::testing::Test {
 protected:
  JobRegistryTest()
      : registry([this] { return now; }, [this] { return "J" + std::to_string(next++); }) {}

  JobRequest request(const std::string& device = "fan0") const {
    JobRequest wanted;
    wanted.name = "Fan Test on " + device;
    wanted.serviceName = "Fan Test";
    wanted.deviceId = device;
    wanted.elementName = "The " + device;
    return wanted;
  }
  std::string running(const JobRequest& wanted) {
    const std::string id = registry.open(wanted).value();
    registry.launch(id);
    registry.start(id);
    return id;
  }
  std::string running() { return running(request()); }
  JobState state(const std::string& id) { return registry.job(id)->state; }
  int percent(const std::string& id) { return registry.job(id)->percent; }

  std::int64_t now = 100 * kSecond;
  int next = 1;
  JobRegistry registry;
};

TEST_F(JobRegistryTest, AJobGoesFromNewOverStartingAndRunningToCompleted) {
  const std::string id = registry.open(request()).value();
  EXPECT_EQ(state(id), JobState::New);
  registry.launch(id);
  EXPECT_EQ(state(id), JobState::Starting);
  registry.start(id);
  EXPECT_EQ(state(id), JobState::Running);
  registry.finish(id, outcomeOf(CompletionState::Ok));
  EXPECT_EQ(state(id), JobState::Completed);
}

struct EndRow {
  const char* name;
  CompletionState verdict;
  JobState end;
  CompletionState told;
};

class JobEnds : public JobRegistryTest, public ::testing::WithParamInterface<EndRow> {};

TEST_P(JobEnds, InTheStateThatBelongsToTheVerdictAtFullPercentageWithARecord) {
  const std::string id = running();
  registry.finish(id, outcomeOf(GetParam().verdict));
  EXPECT_EQ(state(id), GetParam().end);
  EXPECT_EQ(percent(id), 100);
  ASSERT_EQ(registry.records().size(), 1U);
  EXPECT_EQ(registry.records()[0].outcome.state, GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(
    Verdicts, JobEnds,
    ::testing::Values(
        EndRow{"Ok", CompletionState::Ok, JobState::Completed, CompletionState::Ok},
        EndRow{"Warning", CompletionState::Warning, JobState::Completed, CompletionState::Warning},
        EndRow{"Failed", CompletionState::Failed, JobState::Completed, CompletionState::Failed},
        EndRow{"Incomplete", CompletionState::Incomplete, JobState::Completed,
               CompletionState::Incomplete},
        EndRow{"Stopped", CompletionState::Stopped, JobState::Terminated, CompletionState::Aborted},
        EndRow{"Aborted", CompletionState::Aborted, JobState::Killed, CompletionState::Aborted}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(JobRegistryTest, ThePercentageNeverFalls) {
  const std::string id = running();
  registry.progress(id, 0.5);
  registry.progress(id, 0.3);
  EXPECT_EQ(percent(id), 50);
}

TEST_F(JobRegistryTest, ThePercentageIsBelowAHundredUntilTheEnd) {
  const std::string id = running();
  registry.progress(id, 1.7);
  EXPECT_EQ(percent(id), 99);
}

TEST_F(JobRegistryTest, ANegativeOrMeaninglessFractionIsZero) {
  const std::string id = running();
  registry.progress(id, -1);
  EXPECT_EQ(percent(id), 0);
}

TEST_F(JobRegistryTest, ProgressAfterTheEndChangesNothing) {
  const std::string id = running();
  registry.finish(id, outcomeOf(CompletionState::Ok));
  registry.progress(id, 0.1);
  EXPECT_EQ(percent(id), 100);
}

TEST_F(JobRegistryTest, WhatIsToldOfAnUnknownJobChangesNothing) {
  running();
  registry.launch("J9");
  registry.start("J9");
  registry.progress("J9", 0.5);
  registry.status("J9", "Turning");
  registry.finish("J9", outcomeOf(CompletionState::Ok));
  registry.fail("J9", "no fan");
  registry.discard("J9");
  EXPECT_EQ(registry.requestState("J9", 4), StateChange::Invalid);
  EXPECT_FALSE(registry.kill("J9", {}));
  EXPECT_FALSE(registry.removeJob("J9"));
  EXPECT_FALSE(registry.removeRecord("J9"));
  EXPECT_TRUE(registry.stopRequested("J9"));
  EXPECT_EQ(percent("J1"), 0);
  EXPECT_EQ(state("J1"), JobState::Running);
  EXPECT_TRUE(registry.records().empty());
}

TEST_F(JobRegistryTest, RecordsAreNumberedWithinTheJobAndTheCompletionRecordComesLast) {
  Outcome outcome = failureWith(3);
  outcome.notes.push_back({RecordType::DeviceErrors, "bit 3\n", {{"E1", 3}}});
  registry.finish(running(), outcome);
  const auto records = registry.records();
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].id, "J1:0");
  EXPECT_EQ(records[0].type, RecordType::DeviceErrors);
  EXPECT_FALSE(records[0].completion);
  EXPECT_EQ(records[1].id, "J1:1");
  EXPECT_TRUE(records[1].completion);
  EXPECT_EQ(records[1].serviceName, "Fan Test");
  EXPECT_EQ(records[1].elementName, "The fan0");
}

// The reader of the verdict takes the completion record for one of results too, and it is the one
// that people read.
TEST_F(JobRegistryTest, WhatWasMeasuredStandsInARecordOfItsOwnBeforeTheCompletionRecord) {
  Outcome outcome = outcomeOf(CompletionState::Ok, "turned\n");
  outcome.measured.push_back({"Speed", 900, "1/min", false});
  registry.finish(running(), outcome);
  const auto records = registry.records();
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].id, "J1:0");
  EXPECT_EQ(records[0].type, RecordType::Results);
  EXPECT_FALSE(records[0].completion);
  EXPECT_EQ(records[0].format, "|real64 Speed|string SpeedUnits");
  EXPECT_EQ(records[0].outcome.text, "|900.000|1/min");
  EXPECT_TRUE(records[1].completion);
  EXPECT_EQ(records[1].format, "");
  EXPECT_EQ(records[1].outcome.text, "turned\n");
}

TEST_F(JobRegistryTest, AFailureOfTheTestItselfEndsInExceptionWithAnIncompleteRecord) {
  const std::string id = running();
  registry.fail(id, "no more threads");
  EXPECT_EQ(state(id), JobState::Exception);
  EXPECT_EQ(percent(id), 100);
  EXPECT_EQ(registry.job(id)->errorText, "no more threads");
  EXPECT_EQ(registry.records().back().outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(registry.records().back().outcome.text, "The test could not finish: no more threads\n");
  EXPECT_EQ(registry.records().front().type, RecordType::ServiceErrors);
}

TEST_F(JobRegistryTest, TerminateAsksTheRunToStopAndLetsItEnd) {
  const std::string id = running();
  EXPECT_FALSE(registry.stopRequested(id));
  EXPECT_EQ(registry.requestState(id, 4), StateChange::Started);
  EXPECT_EQ(state(id), JobState::ShuttingDown);
  EXPECT_TRUE(registry.stopRequested(id));
  registry.finish(id, outcomeOf(CompletionState::Stopped));
  EXPECT_EQ(state(id), JobState::Terminated);
}

TEST_F(JobRegistryTest, ATerminateBeforeTheThreadRunsIsNotForgotten) {
  const std::string id = registry.open(request()).value();
  registry.launch(id);
  registry.requestState(id, 4);
  registry.start(id);
  EXPECT_EQ(state(id), JobState::ShuttingDown);
  EXPECT_TRUE(registry.stopRequested(id));
}

TEST_F(JobRegistryTest, KillEndsTheJobAtOnceAndTheLateResultIsDropped) {
  const std::string id = running();
  EXPECT_EQ(registry.requestState(id, 5), StateChange::Done);
  EXPECT_EQ(state(id), JobState::Killed);
  EXPECT_EQ(percent(id), 100);
  EXPECT_TRUE(registry.stopRequested(id));
  registry.finish(id, outcomeOf(CompletionState::Ok));
  EXPECT_EQ(state(id), JobState::Killed);
  EXPECT_EQ(registry.records().back().outcome.state, CompletionState::Aborted);
}

struct StateRow {
  std::uint64_t wanted;
  StateChange answer;
};

TEST_F(JobRegistryTest, OtherWishesForAStateAreRefused) {
  const std::string id = running();
  for (const StateRow& row :
       {StateRow{2, StateChange::NotSupported}, StateRow{3, StateChange::NotSupported},
        StateRow{6, StateChange::NotSupported}, StateRow{1, StateChange::InvalidParameter},
        StateRow{7, StateChange::InvalidParameter}})
    EXPECT_EQ(registry.requestState(id, row.wanted), row.answer) << row.wanted;
  EXPECT_EQ(state(id), JobState::Running);
}

TEST_F(JobRegistryTest, AJobThatHasEndedTakesNoWishes) {
  const std::string id = running();
  registry.finish(id, outcomeOf(CompletionState::Ok));
  EXPECT_EQ(registry.requestState(id, 4), StateChange::Invalid);
  EXPECT_EQ(registry.requestState(id, 5), StateChange::Invalid);
}

TEST_F(JobRegistryTest, ASecondRunOnTheSameDeviceHasToWait) {
  const std::string id = running();
  EXPECT_FALSE(registry.open(request()));
  EXPECT_TRUE(registry.open(request("fan1")));
  registry.finish(id, outcomeOf(CompletionState::Ok));
  EXPECT_TRUE(registry.open(request()));
}

TEST_F(JobRegistryTest, AJobIsKeptFiveMinutesAfterItsEnd) {
  registry.finish(running(), outcomeOf(CompletionState::Ok));
  now += 300 * kSecond - 1;
  EXPECT_EQ(registry.jobs().size(), 1U);
  now += 1;
  EXPECT_TRUE(registry.jobs().empty());
}

// Catches a job that is gone from the list and found by its name all the same.
TEST_F(JobRegistryTest, AJobWhoseTimeIsOverIsNotFoundByItsIdEither) {
  const std::string id = running();
  registry.finish(id, outcomeOf(CompletionState::Ok));
  now += 300 * kSecond - 1;
  EXPECT_TRUE(registry.job(id));
  now += 1;
  EXPECT_FALSE(registry.job(id));
}

TEST_F(JobRegistryTest, ARunningJobIsKeptHoweverLongItTakes) {
  running();
  now += 100000 * kSecond;
  EXPECT_EQ(registry.jobs().size(), 1U);
}

TEST_F(JobRegistryTest, AJobThatIsNotToBeDeletedStaysUntilItIsRemoved) {
  JobRequest wanted = request();
  wanted.deleteOnCompletion = false;
  const std::string id = running(wanted);
  EXPECT_FALSE(registry.removeJob(id)) << "still running";
  registry.finish(id, outcomeOf(CompletionState::Ok));
  now += 100000 * kSecond;
  EXPECT_TRUE(registry.job(id));
  EXPECT_TRUE(registry.removeJob(id));
  EXPECT_FALSE(registry.job(id));
}

TEST_F(JobRegistryTest, RecordsOutliveTheirJobUntilTheyExpire) {
  JobRequest wanted = request();
  wanted.keepRecords = 1000 * kSecond;
  registry.finish(running(wanted), outcomeOf(CompletionState::Ok));
  now += 999 * kSecond;
  EXPECT_TRUE(registry.jobs().empty());
  EXPECT_EQ(registry.records().size(), 1U);
  now += kSecond;
  EXPECT_TRUE(registry.records().empty());
}

TEST_F(JobRegistryTest, TheElapsedTimeStandsStillAfterTheEnd) {
  const std::string id = running();
  now += 7 * kSecond;
  EXPECT_EQ(registry.job(id)->elapsed(now), 7 * kSecond);
  registry.finish(id, outcomeOf(CompletionState::Ok));
  now += 5 * kSecond;
  EXPECT_EQ(registry.job(id)->elapsed(now), 7 * kSecond);
}

TEST_F(JobRegistryTest, EachChangeOfStateHasItsTime) {
  const std::string id = registry.open(request()).value();
  const auto times = [&] {
    const Job job = *registry.job(id);
    return std::vector<std::int64_t>{job.submitted / kSecond, job.started / kSecond,
                                     job.changed / kSecond, job.ended / kSecond};
  };
  EXPECT_EQ(times(), (std::vector<std::int64_t>{100, 0, 100, 0}));
  now += kSecond;
  registry.launch(id);
  EXPECT_EQ(times(), (std::vector<std::int64_t>{100, 101, 101, 0}));
  now += kSecond;
  registry.start(id);
  EXPECT_EQ(times(), (std::vector<std::int64_t>{100, 101, 102, 0}));
  now += kSecond;
  registry.requestState(id, 4);
  EXPECT_EQ(times(), (std::vector<std::int64_t>{100, 101, 103, 0}));
  now += kSecond;
  registry.finish(id, outcomeOf(CompletionState::Stopped));
  EXPECT_EQ(times(), (std::vector<std::int64_t>{100, 101, 104, 104}));
}

TEST_F(JobRegistryTest, NoTimeHasElapsedWhileTheClockIsSetBack) {
  const std::string id = running();
  now -= 7 * kSecond;
  EXPECT_EQ(registry.job(id)->elapsed(now), 0);
}

TEST_F(JobRegistryTest, AKilledJobSaysSoInItsRecords) {
  registry.kill(running(), {});
  const auto records = registry.records();
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].type, RecordType::ServiceErrors);
  EXPECT_EQ(records[0].outcome.text, "The test was killed by a client.\n");
  EXPECT_EQ(records[1].type, RecordType::Results);
  EXPECT_EQ(records[1].outcome.text, "The test was killed.\n");
}

TEST_F(JobRegistryTest, AKilledJobIsKeptOrForgottenAsWished) {
  for (const bool forgotten : {false, true}) {
    JobRequest wanted = request();
    wanted.deleteOnCompletion = !forgotten;
    const std::string id = running(wanted);
    registry.kill(id, forgotten);
    registry.finish(id, outcomeOf(CompletionState::Stopped));
    EXPECT_EQ(registry.job(id)->request.deleteOnCompletion, forgotten);
  }
  JobRequest wanted = request();
  wanted.deleteOnCompletion = false;
  const std::string id = running(wanted);
  registry.kill(id, {});
  EXPECT_FALSE(registry.job(id)->request.deleteOnCompletion);
}

TEST_F(JobRegistryTest, AJobThatEndedFailsNoMore) {
  const std::string id = running();
  registry.finish(id, outcomeOf(CompletionState::Ok));
  registry.fail(id, "no fan");
  EXPECT_EQ(state(id), JobState::Completed);
  EXPECT_EQ(registry.records().size(), 1U);
}

TEST_F(JobRegistryTest, AnIncompleteRunIsAnErrorOfTheJobWithItsText) {
  const std::string id = running();
  registry.finish(id, outcomeOf(CompletionState::Incomplete, "half\n"));
  EXPECT_EQ(registry.job(id)->errorText, "half\n");
  const std::string other = running();
  registry.finish(other, outcomeOf(CompletionState::Failed, "broken\n"));
  EXPECT_EQ(registry.job(other)->errorText, "");
}

TEST_F(JobRegistryTest, AnotherServiceMayUseTheSameDevice) {
  running();
  JobRequest other = request();
  other.serviceName = "Blade Test";
  EXPECT_TRUE(registry.open(other));
}

TEST_F(JobRegistryTest, ARemovedRecordLeavesTheOthers) {
  registry.fail(running(), "no fan");
  EXPECT_TRUE(registry.removeRecord("J1:0"));
  EXPECT_FALSE(registry.removeRecord("J1:0"));
  ASSERT_EQ(registry.records().size(), 1U);
  EXPECT_EQ(registry.records()[0].id, "J1:1");
}

TEST_F(JobRegistryTest, ClearingForgetsEverything) {
  registry.finish(running(), outcomeOf(CompletionState::Ok));
  registry.clear();
  EXPECT_TRUE(registry.jobs().empty());
  EXPECT_TRUE(registry.records().empty());
  EXPECT_FALSE(registry.anyRunning());
}

TEST_F(JobRegistryTest, StoppingAllReachesEveryRun) {
  const std::string one = running();
  const std::string two = running(request("fan1"));
  EXPECT_TRUE(registry.anyRunning());
  registry.stopAll();
  EXPECT_TRUE(registry.stopRequested(one));
  EXPECT_TRUE(registry.stopRequested(two));
}

TEST(JobId, IsARandomUuidOfFixedWidthBehindThePrefix) {
  const std::regex form(
      "DIAGS:[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
  for (int i = 0; i < 100; ++i) {
    const std::string id = makeJobId();
    EXPECT_TRUE(std::regex_match(id, form)) << id;
    EXPECT_NE(id, makeJobId());
  }
}

/// The four groups of digits in the middle of an id, but for those of version and variant.
std::uint32_t randomBitsOf(const std::string& id) {
  const auto digits = [&id](std::size_t at, std::size_t count) {
    return static_cast<std::uint32_t>(std::stoul(id.substr(at, count), nullptr, 16));
  };
  return digits(15, 4) << 16U | digits(21, 3) << 4U | digits(28, 1);
}

// Catches bits that are always the same, by which ids come twice sooner than they should.
TEST(JobId, EachBitOfTheRandomDigitsIsNowOneNowZero) {
  std::uint32_t ever = 0;
  std::uint32_t always = 0xFFFFFFFFU;
  for (int i = 0; i < 200; ++i) {
    const std::uint32_t bits = randomBitsOf(makeJobId());
    ever |= bits;
    always &= bits;
  }
  EXPECT_EQ(ever, 0xFFFFFFFFU);
  EXPECT_EQ(always, 0U);
}

struct RivalRow {
  const char* name;
  const char* service;
  const char* device;
  Exclusive running;
  Exclusive wanted;
  bool waits;
};

class Rivals : public JobRegistryTest, public ::testing::WithParamInterface<RivalRow> {
 protected:
  JobRequest asked(const std::string& service, const std::string& device, Exclusive exclusive) {
    JobRequest wanted = request(device);
    wanted.name = service + " on " + device;
    wanted.serviceName = service;
    wanted.exclusive = exclusive;
    return wanted;
  }
};

TEST_P(Rivals, WaitForEachOtherAsEitherOfThemWishes) {
  const RivalRow& row = GetParam();
  running(asked("Fan Test", "fan0", row.running));
  std::string rival;
  const auto id = registry.open(asked(row.service, row.device, row.wanted), &rival);
  EXPECT_EQ(!id, row.waits);
  EXPECT_EQ(rival, row.waits ? "Fan Test on fan0" : "");
}

constexpr Exclusive kItself = Exclusive::Itself, kDevice = Exclusive::Device,
                    kFamily = Exclusive::Family;

INSTANTIATE_TEST_SUITE_P(
    Rows, Rivals,
    ::testing::Values(RivalRow{"TheSameOnTheSame", "Fan Test", "fan0", kItself, kItself, true},
                      RivalRow{"TheSameOnAnother", "Fan Test", "fan1", kItself, kItself, false},
                      RivalRow{"AnotherOnTheSame", "Balance", "fan0", kItself, kItself, false},
                      RivalRow{"ADeviceForOneselfFirst", "Balance", "fan0", kDevice, kItself, true},
                      RivalRow{"ADeviceForOneselfThen", "Balance", "fan0", kItself, kDevice, true},
                      RivalRow{"AnotherDevice", "Balance", "fan1", kDevice, kDevice, false},
                      RivalRow{"TheFamilyFirst", "Balance", "fan1", kFamily, kItself, true},
                      RivalRow{"TheFamilyThen", "Balance", "fan1", kItself, kFamily, true}),
    [](const auto& row) { return std::string(row.param.name); });

// A job that is killed ends at once, and the thread of its run a little later: two memory tests at
// a time would take each other's memory.
TEST_F(JobRegistryTest, ARunThatWasKilledIsWaitedForUntilItsThreadIsDone) {
  const std::string id = running();
  registry.kill(id, {});
  EXPECT_FALSE(registry.open(request()));
  registry.finish(id, outcomeOf(CompletionState::Stopped));
  EXPECT_TRUE(registry.open(request()));
}

TEST_F(JobRegistryTest, ARunThatWasKilledAndThenFailedIsOverToo) {
  const std::string id = running();
  registry.kill(id, {});
  registry.fail(id, "no fan");
  EXPECT_TRUE(registry.open(request()));
}

}  // namespace
}  // namespace providers
