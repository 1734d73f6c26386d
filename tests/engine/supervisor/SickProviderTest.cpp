#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <ostream>
#include <thread>

#include "host/verbs/Outcomes.h"
#include "tests/engine/supervisor/SickEnvironment.h"
#include "tests/engine/supervisor/SickRun.h"
#include "tests/engine/supervisor/SickTable.h"

namespace sick {
namespace {

using namespace engine;

constexpr std::uint64_t kSick = 1;
constexpr std::uint64_t kSound = 2;
constexpr int kShortTime = 1500 * DIAGS_SLOWNESS;
constexpr int kLongTime = 20'000 * DIAGS_SLOWNESS;
constexpr int kGrace = 300;

struct Result {
  Events events;
  RunSummary summary;
  double seconds = 0;
};

void runBoth(const std::string& sickness, const Plan& plan, Result& result) {
  const std::vector<OfferedTest> found = offer();
  const Sickness befallen(sickness);
  Engine engine = makeEngine();
  const auto start = std::chrono::steady_clock::now();
  result.summary = engine.run(plan, found, {}, {&result.events});
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

Outcome outcomeOf(const Events& events, std::uint64_t test) {
  const auto ends = events.of<Ended>(test);
  return ends.empty() ? Outcome::kSkipped : ends.front().outcome;
}

bool hasCause(const Events& events, Cause cause) {
  const auto errors = events.of<Error>(kSick);
  return std::any_of(errors.begin(), errors.end(),
                     [&](const Error& one) { return one.cause == cause; });
}

std::string textsOf(const Events& events) {
  std::string text;
  for (const Error& error : events.of<Error>(kSick)) {
    text += std::to_string(static_cast<int>(error.cause)) + " " + error.text + " in " +
            error.provider + "." + error.operation + "\n";
  }
  return text;
}

class ASickProvider : public testing::TestWithParam<Row> {};

TEST_P(ASickProvider, CostsItsOwnTestAloneAndTheCauseIsTold) {
  const Row& row = GetParam();
  Result result;
  runBoth(row.sickness, bothTests(row.hangs ? kShortTime : kLongTime, kGrace), result);
  EXPECT_EQ(result.events.disorder(), "");
  EXPECT_EQ(outcomeOf(result.events, kSick), row.outcome) << textsOf(result.events);
  EXPECT_EQ(outcomeOf(result.events, kSound), Outcome::kPassed);
  EXPECT_EQ(host::statusOf(result.summary, true), row.status());
  EXPECT_EQ(leftProcesses(), 0U);
  // The limit, the grace and what it takes to end a worker.
  EXPECT_LT(result.seconds, 20 * DIAGS_SLOWNESS);
  if (row.cause) {
    EXPECT_TRUE(hasCause(result.events, *row.cause)) << textsOf(result.events);
  }
  if (row.names) {
    const auto errors = result.events.of<Error>(kSick);
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(errors.back().provider, "SickProvider");
    EXPECT_NE(errors.back().operation, "");
    // A thread of the provider's own may have no stack left on which to say it.
    const bool isSaid = row.cause == Cause::kCrashed && row.sickness.find("thread:") != 0;
    if (isSaid) {
      EXPECT_TRUE(errors.back().processor) << errors.back().text;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Of, ASickProvider, testing::ValuesIn(rows()), nameOf);

class AListing : public testing::TestWithParam<Row> {};

TEST_P(AListing, NamesTheSickProviderAndHasTheOthersTests) {
  offer();
  const Sickness befallen(GetParam().sickness);
  Engine engine = makeEngine();
  const Inventory inventory = engine.list(Detail::kNames);
  ASSERT_EQ(inventory.tests.size(), 1U);
  EXPECT_EQ(inventory.tests.front().service, "SOUND Test");
  ASSERT_EQ(inventory.circumstances.unusable.size(), 1U);
  EXPECT_EQ(inventory.circumstances.unusable.front().name, "SickProvider");
  EXPECT_NE(inventory.circumstances.unusable.front().reason, "");
  EXPECT_EQ(leftProcesses(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Of, AListing, testing::ValuesIn(listingRows()), nameOf);

class AListingThatIsSurvived : public testing::TestWithParam<Row> {};

TEST_P(AListingThatIsSurvived, HasAllTestsAndLeavesNoProcess) {
  offer();
  const Sickness befallen(GetParam().sickness);
  Engine engine = makeEngine();
  const Inventory inventory = engine.list(Detail::kNames);
  EXPECT_EQ(inventory.tests.size(), 2U);
  EXPECT_TRUE(inventory.circumstances.unusable.empty());
  EXPECT_EQ(leftProcesses(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Of, AListingThatIsSurvived, testing::ValuesIn(survivedListingRows()),
                         nameOf);

/// What a check finds in the installation, in words.
std::string checked(const std::string& sickness) {
  const Sickness befallen(sickness);
  Engine engine = makeEngine();
  const CheckAnswer answer = engine.check();
  std::string text = answer.isFaultless ? "faultless\n" : "faulty\n";
  for (const Finding& one : answer.circumstances.findings) text += one.text + "\n";
  return text;
}

TEST(AProviderThatAsksHowMuchMemoryThereIs, IsNoFaultOfTheInstallation) {
  EXPECT_EQ(checked("loading:probe"), checked(""));
}

#if !defined(_WIN32) && DIAGS_SLOWNESS == 1
/// Long enough for what has no end to come to nothing.
std::vector<UnusableProvider> unusableInLongListing(const std::string& sickness) {
  offer();
  const Sickness befallen(sickness);
  EngineOptions options;
  options.installation.root = DIAGS_SICK_INSTALLATION;
  options.installation.schemaCache = false;
  options.worker = DIAGS_WORKER;
  Engine engine(options);
  const Inventory inventory = engine.list(Detail::kNames);
  EXPECT_EQ(inventory.tests.size(), 1U);
  return inventory.circumstances.unusable;
}

/// The worker keeps its instances, and has a limit.
TEST(AProviderThatReturnsInstancesWithoutEnd, IsNamedWhenMemoryRunsOut) {
  const auto unusable = unusableInLongListing("listing:endless");
  ASSERT_EQ(unusable.size(), 1U);
  EXPECT_EQ(unusable.front().name, "SickProvider");
  EXPECT_EQ(unusable.front().reason.find("it ran out of memory"), 0U) << unusable.front().reason;
}
#endif

TEST(AWorkerThatIsNoProgram, MakesTheInstallationUnusable) {
  EngineOptions options;
  options.installation.root = DIAGS_SICK_INSTALLATION;
  options.worker = DIAGS_SICK_INSTALLATION "/schema/sick.mof";
  Engine engine(options);
  try {
    engine.list(Detail::kNames);
    ADD_FAILURE() << "it was started";
  } catch (const EngineError& error) {
    EXPECT_EQ(error.kind(), EngineError::Kind::kUnusable);
    EXPECT_NE(std::string(error.what()).find("sick.mof cannot be started"), std::string::npos);
  }
}

TEST(AProviderThatBlamesInventedOnes, EndsTheListingAndItsTestAllTheSame) {
  const std::vector<OfferedTest> found = offer();
  const Sickness befallen("listing:forgeblame");
  Engine engine = makeEngine();
  EXPECT_THROW(engine.list(Detail::kNames), EngineError);
  Events events;
  engine.run(bothTests(kLongTime, kGrace), found, {}, {&events});
  EXPECT_EQ(events.disorder(), "");
  EXPECT_EQ(outcomeOf(events, kSick), Outcome::kBroken);
}

TEST(ASickProvidersRecord, IsThereWithinASecondOfTheCrash) {
  Result result;
  runBoth("starting:fault", bothTests(20'000, kGrace), result);
  const auto ends = result.events.of<Ended>(kSick);
  const auto soundEnds = result.events.of<Ended>(kSound);
  ASSERT_EQ(ends.size(), 1U);
  ASSERT_EQ(soundEnds.size(), 1U);
  EXPECT_LT(ends.front().seconds, soundEnds.front().seconds + 1);  // both start a worker
}

TEST(ASickProvidersRecord, NamesTheProcessorOfTheCrash) {
  const OneProcessor all;
  Result result;
  runBoth("starting:fault", bothTests(20'000, kGrace), result);
  const auto errors = result.events.of<Error>(kSick);
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors.back().processor, std::optional<std::uint64_t>(all.number()));
  EXPECT_NE(errors.back().text.find(" on CPU " + std::to_string(all.number())), std::string::npos)
      << errors.back().text;
}

#if !defined(_WIN32) && DIAGS_SLOWNESS == 1
/// Others clean up behind it, and are not blamed for it.
TEST(ASickProvidersRecord, NamesWhoRanOutOfMemory) {
  Result result;
  runBoth("starting:eat", bothTests(20'000, kGrace), result);
  const auto errors = result.events.of<Error>(kSick);
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors.back().cause, Cause::kOutOfMemory);
  EXPECT_EQ(errors.back().provider, "SickProvider") << textsOf(result.events);
  EXPECT_EQ(errors.back().operation, "invokeMethod");
}
#endif

TEST(ADawdlingCleanUp, CostsTheGraceAtMostAndTheNextTestBeginsAtOnce) {
  Result result;
  runBoth("cleaning:sleep", bothTests(20'000, 700), result);
  EXPECT_EQ(result.events.disorder(), "");
  EXPECT_EQ(outcomeOf(result.events, kSick), Outcome::kPassed);
  EXPECT_EQ(outcomeOf(result.events, kSound), Outcome::kPassed);
  EXPECT_LT(result.seconds, 6 * DIAGS_SLOWNESS);
  std::chrono::microseconds ended{};
  std::chrono::microseconds begun{};
  for (const Event& event : result.events.all) {
    const auto at = event.time.time_since_epoch();
    if (event.test == kSick && std::holds_alternative<Ended>(event.body)) ended = at;
    if (event.test == kSound && std::holds_alternative<TestStarted>(event.body)) begun = at;
  }
  EXPECT_LT((begun - ended).count(), 300'000);
  const auto messages = result.events.of<Message>(0);
  const auto namesIt = [](const Message& one) {
    return one.text.find("SickProvider") != std::string::npos;
  };
  EXPECT_EQ(std::count_if(messages.begin(), messages.end(), namesIt), 1);
}

bool isAnything(const Event&) { return true; }
/// Then its job is known.
bool isProgress(const Event& event) { return std::holds_alternative<Progress>(event.body); }

#if !defined(_WIN32)
// Catches a worker that inherits a report's file or another worker's pipe, and a provider with it.
TEST(AWorkerAtWork, HoldsNothingThatItsSupervisorHadOpenBesides) {
  StrayPipe pipe;
  Result result;
  bool isHeld = true;
  result.events.onEvent = [&](const Event& event) {
    if (event.test == kSick && isProgress(event)) isHeld = pipe.isHeldByOthers();
  };
  runBoth("", bothTests(kLongTime, kGrace), result);
  EXPECT_EQ(outcomeOf(result.events, kSick), Outcome::kPassed) << textsOf(result.events);
  EXPECT_FALSE(isHeld);
}
#endif

/// Cancels a moment after the sick test's first event of that kind.
void cancelWhileSick(const std::string& sickness, int grace, bool (*isAwaited)(const Event&),
                     Result& result, const Engine::RunOptions& options = {}) {
  const std::vector<OfferedTest> found = offer();
  const Sickness befallen(sickness);
  Engine engine = makeEngine();
  std::promise<void> begun;
  bool isFirst = true;
  result.events.onEvent = [&](const Event& event) {
    if (event.test != kSick || !isAwaited(event)) return;
    if (std::exchange(isFirst, false)) begun.set_value();
  };
  std::thread user([&] {
    begun.get_future().wait();
    for (int i = 0; i < 30; ++i) pauseBriefly();
    engine.cancel();
  });
  result.summary = engine.run(bothTests(30'000, grace), found, options, {&result.events});
  if (isFirst) begun.set_value();  // it never came, and nobody has to wait for it
  user.join();
}

/// Nobody misses it in a report, nor takes it for one that ran.
void expectSkipped(const Events& events, std::uint64_t test, const std::string& reason) {
  const auto starts = events.of<TestStarted>(test);
  const auto ends = events.of<Ended>(test);
  ASSERT_EQ(starts.size(), 1U);
  ASSERT_EQ(ends.size(), 1U);
  EXPECT_EQ(starts.front().service, "SOUND Test");
  EXPECT_EQ(ends.front().outcome, Outcome::kSkipped);
  EXPECT_EQ(ends.front().text, reason);
}

class ACancelledRun : public testing::TestWithParam<const char*> {};

TEST_P(ACancelledRun, AbortsTheTestWhereverItHangsAndBeginsNoOther) {
  Result result;
  cancelWhileSick(GetParam(), kGrace, isAnything, result);
  EXPECT_EQ(result.events.disorder(), "");
  EXPECT_TRUE(result.summary.wasCancelled);
  EXPECT_EQ(outcomeOf(result.events, kSick), Outcome::kAborted);
  expectSkipped(result.events, kSound, "the user ended the run before it began");
  EXPECT_EQ(leftProcesses(), 0U);
}

std::string phaseOf(const testing::TestParamInfo<const char*>& info) {
  const std::string text = info.param;
  return text.substr(0, text.find(':'));
}

INSTANTIATE_TEST_SUITE_P(At, ACancelledRun,
                         testing::Values("opening:sleep", "loading:loop", "listing:sleep",
                                         "starting:loop", "thread:sleep", "polling:sleep",
                                         "reporting:loop"),
                         phaseOf);

TEST(ACancelledRunInGoodOrder, EndsByTheJobsOwnRecord) {
  Result result;
  cancelWhileSick("polling:linger", 15'000, isProgress, result);
  EXPECT_EQ(outcomeOf(result.events, kSick), Outcome::kAborted);
  EXPECT_TRUE(result.events.of<Error>(kSick).empty()) << textsOf(result.events);
  EXPECT_EQ(result.events.of<Ended>(kSick).front().brief, "(Aborted)");
}

/// When the first event of a kind that `isMeant` came of the sick test.
std::chrono::system_clock::time_point timeOf(const Events& events, bool (*isMeant)(const Event&)) {
  for (const Event& event : events.all) {
    if (event.test == kSick && isMeant(event)) return event.time;
  }
  ADD_FAILURE() << "there was none";
  return {};
}

/// The runner looks at its job when it has begun, and after five seconds.
TEST(ATestThatObeysWhenItsTimeIsUp, IsRecordedBeforeTheRunnerWouldHaveLookedAgain) {
  Result result;
  runBoth("polling:linger", bothTests(1'000, 60'000), result);
  EXPECT_EQ(outcomeOf(result.events, kSick), Outcome::kAborted) << textsOf(result.events);
  EXPECT_TRUE(result.events.of<Error>(kSick).empty()) << textsOf(result.events);
  EXPECT_EQ(result.events.of<Ended>(kSick).front().brief, "(Aborted)");
  EXPECT_EQ(outcomeOf(result.events, kSound), Outcome::kPassed);
  EXPECT_EQ(host::statusOf(result.summary, true), host::ExitStatus::kCouldNotRun);
  const auto isEnd = [](const Event& event) { return std::holds_alternative<Ended>(event.body); };
  const auto taken = timeOf(result.events, isEnd) - timeOf(result.events, isProgress);
  EXPECT_LT(taken, std::chrono::seconds(5));
}

/// What is ended then is a clean-up, and takes nothing back.
TEST(ARunWhoseTimeIsUp, BehindItsLastVerdictIsWhole) {
  Result result;
  Plan plan = bothTests(30'000, 4'000 * DIAGS_SLOWNESS);
  plan.groups[0].tests.pop_back();
  plan.deadline = Duration(3'000 * DIAGS_SLOWNESS);
  runBoth("cleaning:sleep", plan, result);
  EXPECT_GT(result.seconds, 3 * DIAGS_SLOWNESS);
  EXPECT_FALSE(result.summary.isTimeUp);
  EXPECT_EQ(outcomeOf(result.events, 0), Outcome::kPassed) << textsOf(result.events);
}

/// A test is run again in its worker, behind a first run that passes.
Engine::RunOptions twice() {
  Engine::RunOptions options;
  options.threadedMinutes = 0;
  return options;
}

bool isSecondRun(const Event& event) { return std::holds_alternative<StepStarted>(event.body); }

class ACancelledSecondRun : public testing::TestWithParam<const char*> {};

/// Whatever its record says of the hardware: it was told to end.
TEST_P(ACancelledSecondRun, EndsByItsJobsOwnRecord) {
  Result result;
  cancelWhileSick(GetParam(), 15'000, isSecondRun, result, twice());
  EXPECT_EQ(result.events.disorder(), "");
  EXPECT_TRUE(result.events.of<Error>(kSick).empty()) << textsOf(result.events);
  const Ended end = result.events.of<Ended>(kSick).front();
  EXPECT_EQ(end.outcome, Outcome::kAborted);
  EXPECT_EQ(end.brief, "(Aborted)");
  EXPECT_EQ(end.record, "It was once more");
  EXPECT_LT(end.seconds, 15) << "its job was not told";
}

std::string kindOf(const testing::TestParamInfo<const char*>& info) {
  const std::string text = info.param;
  return text.substr(text.find(':') + 1);
}

INSTANTIATE_TEST_SUITE_P(That, ACancelledSecondRun,
                         testing::Values("again:linger", "again:lingerfail"), kindOf);

TEST(ARunBetweenWhoseTwoRunsTheUserEndsIt, IsNoPass) {
  Result result;
  cancelWhileSick("reporting:seconds", 15'000, isAnything, result, twice());
  EXPECT_TRUE(result.events.of<StepStarted>(kSick).empty());
  EXPECT_EQ(outcomeOf(result.events, kSick), Outcome::kAborted) << textsOf(result.events);
}

TEST(ASecondRun, ThatFailsIsTheVerdictAndItsRecordIsTold) {
  const std::vector<OfferedTest> found = offer();
  const Sickness befallen("again:fail");
  Engine engine = makeEngine();
  Events events;
  engine.run(bothTests(30'000, kGrace), found, twice(), {&events});
  const Ended end = events.of<Ended>(kSick).front();
  EXPECT_EQ(end.outcome, Outcome::kFailed) << textsOf(events);
  EXPECT_EQ(end.text, "Fail");
  EXPECT_EQ(end.record, "It was once more");
  EXPECT_EQ(end.remark, "the threaded run");
  EXPECT_EQ(outcomeOf(events, kSound), Outcome::kPassed);
}

/// Its tests that came to their ends passed; those that did not begin are no pass.
TEST(ARunWhoseTimeIsUp, IsNoPassAndSaysHowManyTestsAreMissing) {
  Result result;
  Plan plan = bothTests(30'000, 15'000);
  plan.deadline = Duration(2'000);
  runBoth("reporting:seconds", plan, result);
  EXPECT_TRUE(result.summary.isTimeUp);
  EXPECT_EQ(outcomeOf(result.events, kSick), Outcome::kPassed) << textsOf(result.events);
  expectSkipped(result.events, kSound, "the time of the whole run was up before it began");
  EXPECT_EQ(outcomeOf(result.events, 0), Outcome::kAborted);
  const auto messages = result.events.of<Message>(0);
  ASSERT_FALSE(messages.empty());
  EXPECT_EQ(messages.back().text, "1 test was not begun any more");
}

}  // namespace
}  // namespace sick
