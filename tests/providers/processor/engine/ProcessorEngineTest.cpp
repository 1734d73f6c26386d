#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <system_error>

#include "providers/processor/engine/ProcessorEngine.h"
#include "providers/processor/operations/OperationTable.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/processor/FaultyProcessor.h"

namespace providers {
namespace {

using Cpus = std::vector<unsigned>;

std::atomic<std::uint64_t> turnedItems{0};

void turn(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  turnedItems += items;
  for (std::size_t i = 0; i < items; ++i) results[i] = ~operands[i];
}

void turnByOtherMeans(const std::uint64_t* operands, std::uint64_t* results) {
  *results = ~std::uint64_t{0} - *operands;
}

constexpr Operation kTurn{"Turn", Unit::Integer, 1, 1, 4, nullptr, turn, turnByOtherMeans};
constexpr Operation kTurnToo{"Turn too", Unit::Integer, 1, 1, 4, nullptr, turn, turnByOtherMeans};
constexpr Operation kTurnByLibrary{"Library", Unit::Cache, 1, 1, 4, nullptr, turn, nullptr};
constexpr Operation kTurnByAnother{"Another", Unit::Cache, 1, 1, 4, nullptr, turn, nullptr};

template <std::uint64_t kIsRight>
void turnAndSay(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t i = 0; i < items; ++i) {
    results[2 * i] = ~operands[i];
    results[2 * i + 1] = kIsRight;
  }
}

class ProcessorEngineTest : public ::testing::Test {
 protected:
  ProcessorEngineTest() {
    turnedItems = 0;
    surroundings.bind = FaultyProcessor::binder();
    surroundings.clock = [this] { return secondsPerLook * looks++; };
    surroundings.threadSeconds = [this] { return 0.5 * secondsPerLook * looks; };
    surroundings.executor = &faulty;
    plan.operations = {kTurn, kTurnToo};
    plan.cpus = {0, 1, 2, 3, 4, 5, 6, 7};
    plan.places = FaultyProcessor::places();
    plan.targetSeconds = 0;  // once each
    plan.seed = 1;
  }
  ProcessorReport run() { return ProcessorEngine(surroundings).run(plan, control); }

  std::atomic<int> looks{0};
  double secondsPerLook = 0.001;
  FaultyProcessor faulty;
  ProcessorSurroundings surroundings;
  ProcessorPlan plan;
  FakeControl control;
};

TEST_F(ProcessorEngineTest, EveryOperationIsDoneOnEveryCpu) {
  const ProcessorReport report = run();
  EXPECT_EQ(report.tested, plan.cpus);
  EXPECT_EQ(report.operations, 2U);
  EXPECT_EQ(report.fewestBlocks, 8U);
  EXPECT_EQ(report.mostBlocks, 8U);
  EXPECT_EQ(turnedItems, 8U * 8 * 4);
  EXPECT_EQ(report.errors, 0U);
  EXPECT_TRUE(report.findings.empty());
  EXPECT_GT(report.seconds, 0);
}

TEST_F(ProcessorEngineTest, AThousandCleanRunsOfEveryInstructionAreSilent) {
  plan.operations = processorOperations();
  plan.cpus = {0, 1};
  secondsPerLook = 0.0001;
  plan.targetSeconds = 1.5;
  const ProcessorReport report = run();
  EXPECT_EQ(report.errors, 0U);
  EXPECT_GT(report.fewestBlocks, 1000U);
}

TEST_F(ProcessorEngineTest, OperationsAreRepeatedForTheTargetTimeWithOtherOperands) {
  plan.cpus = {0};
  secondsPerLook = 0.01;
  plan.targetSeconds = 3.5;
  const ProcessorReport report = run();
  EXPECT_GT(report.fewestBlocks, 100U);
  EXPECT_GE(report.seconds, 3.4);
}

struct FaultRow {
  const char* name;
  std::set<unsigned> cpus;
  FaultyProcessor::Where where;
  Extent extent;
};

class EachFault : public ProcessorEngineTest, public ::testing::WithParamInterface<FaultRow> {};

TEST_P(EachFault, IsFoundAndPlaced) {
  for (const char* operation : {"Turn", "Library"}) {
    plan.operations = {kTurn, kTurnByLibrary};
    faulty.only = operation;
    faulty.cpus = GetParam().cpus;
    faulty.where = GetParam().where;
    const ProcessorReport report = run();
    ASSERT_FALSE(report.findings.empty()) << operation;
    EXPECT_GE(report.errors, report.findings.size());
    for (const CalculationFault& finding : report.findings) {
      EXPECT_EQ(GetParam().cpus.count(finding.verdict.place.cpu), 1U) << operation;
      EXPECT_EQ(finding.verdict.extent, GetParam().extent) << operation;
      EXPECT_TRUE(finding.verdict.comesBack);
      EXPECT_STREQ(finding.suspicion.operation.name, operation);
      EXPECT_EQ(finding.verdict.mismatch.expected ^ finding.verdict.mismatch.found, faulty.bit);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    OfAProcessor, EachFault,
    ::testing::Values(
        FaultRow{"ThreadResult", {3}, FaultyProcessor::Where::Result, Extent::Thread},
        FaultRow{"ThreadOperand", {0}, FaultyProcessor::Where::Operand, Extent::Thread},
        FaultRow{"ThreadOnTheWay", {7}, FaultyProcessor::Where::OnTheWay, Extent::Thread},
        FaultRow{"CoreResult", {2, 3}, FaultyProcessor::Where::Result, Extent::Core},
        FaultRow{"CoreOperand", {4, 5}, FaultyProcessor::Where::Operand, Extent::Core},
        FaultRow{"CoreOnTheWay", {6, 7}, FaultyProcessor::Where::OnTheWay, Extent::Core}),
    [](const auto& row) { return row.param.name; });

TEST_F(ProcessorEngineTest, APackageThatIsWrongIsPlaced) {
  faulty.cpus = {4, 5, 6, 7};
  const ProcessorReport report = run();
  ASSERT_EQ(report.findings.size(), 8U) << "four threads, two operations";
  for (const CalculationFault& finding : report.findings) {
    EXPECT_EQ(finding.verdict.extent, Extent::Package);
    EXPECT_EQ(finding.verdict.place.package, 1U);
  }
}

TEST_F(ProcessorEngineTest, AFlipThatHappensOnceIsFoundWherever) {
  for (int call = 0; call < 8; ++call) {
    FaultyProcessor once;
    once.cpus = {3};
    once.firstCall = once.lastCall = call;
    surroundings.executor = &once;
    const ProcessorReport report = run();
    EXPECT_EQ(report.errors, 1U);
    ASSERT_EQ(report.findings.size(), 1U) << call;
    EXPECT_EQ(report.findings[0].verdict.place.cpu, 3U);
    EXPECT_FALSE(report.findings[0].verdict.comesBack);
    EXPECT_EQ(report.findings[0].count, 1U);
  }
}

TEST_F(ProcessorEngineTest, AWrongAnswerIsItsMakersFault) {
  plan.operations = {kTurnByLibrary, kTurnByAnother};  // eight answers: one for each
  faulty.cpus = {1};
  faulty.lastCall = 0;  // of its calls the first is the one for an answer
  const ProcessorReport report = run();
  EXPECT_GE(report.errors, 7U);
  ASSERT_EQ(report.findings.size(), 1U);
  EXPECT_EQ(report.findings[0].verdict.place.cpu, 1U);
  EXPECT_FALSE(report.findings[0].verdict.comesBack);
  EXPECT_EQ(report.findings[0].count, report.errors);
}

TEST_F(ProcessorEngineTest, AnAnswerThatIsNotTheKnownOneIsFoundOnASingleThread) {
  Operation wrong = processorOperations().front();
  wrong.answer = [](const std::uint64_t*, std::uint64_t* results) { results[0] = results[1] = 4; };
  wrong.compute = [](const std::uint64_t*, std::uint64_t* results, std::size_t items) {
    std::fill(results, results + 2 * items, 4);
  };
  plan.operations = {wrong};
  plan.cpus = {0};
  plan.places = {{0, 0, 0}};
  const ProcessorReport report = run();
  EXPECT_EQ(report.errors, 1U);
  ASSERT_EQ(report.findings.size(), 1U);
  EXPECT_TRUE(report.findings[0].suspicion.isAnswer);
}

// Catches a library that gets the same wrong results each time, or none, on a machine where nobody
// gets others.
TEST_F(ProcessorEngineTest, WhatSaysThatItIsWrongIsFoundThoughAllAgree) {
  plan.operations = {{"Says no", Unit::Kernel, 1, 2, 4, nullptr, turnAndSay<0>, nullptr}};
  plan.cpus = {0};
  plan.places = {{0, 0, 0}};
  ProcessorReport report = run();
  EXPECT_EQ(report.errors, 4U) << "one a block";
  ASSERT_EQ(report.findings.size(), 1U);
  EXPECT_TRUE(report.findings[0].suspicion.isAnswer);
  EXPECT_TRUE(report.findings[0].verdict.comesBack);
  EXPECT_EQ(report.findings[0].verdict.extent, Extent::Core);
  plan.cpus = {0, 1, 2, 3, 4, 5, 6, 7};
  plan.places = FaultyProcessor::places();
  report = run();
  ASSERT_FALSE(report.findings.empty());
  EXPECT_EQ(report.findings[0].verdict.extent, Extent::Everywhere);
}

// Catches a majority that says of itself that it is wrong.
TEST_F(ProcessorEngineTest, WhoSaysThatItIsWrongHasNoVoice) {
  plan.operations = {{"Says yes", Unit::Kernel, 1, 2, 4, nullptr, turnAndSay<1>, nullptr}};
  faulty.cpus = {0, 1, 2, 3, 4, 5, 6};
  faulty.bit = 1;  // of the last word
  const ProcessorReport report = run();
  ASSERT_FALSE(report.findings.empty());
  for (const CalculationFault& finding : report.findings)
    EXPECT_EQ(finding.verdict.right, (Cpus{7})) << finding.verdict.place.cpu;
}

TEST_F(ProcessorEngineTest, TheFirstErrorEndsTheRunWhereThatIsWanted) {
  faulty.cpus = {0};
  plan.cpus = {0};
  plan.haltOnError = true;
  const ProcessorReport report = run();
  EXPECT_LE(report.errors, 4U) << "no more than the blocks of an operation";
  EXPECT_FALSE(report.stopped);
  plan.haltOnError = false;
  EXPECT_EQ(run().errors, 8U);
}

TEST_F(ProcessorEngineTest, ACpuThatCannotBeUsedIsToldAndTheOthersAreTested) {
  for (const Cpus& cpus : {Cpus{0, 8, 2}, Cpus{8, 0, 2}, Cpus{0, 2, 8}}) {
    plan.cpus = cpus;
    const ProcessorReport report = run();
    EXPECT_EQ(report.tested, (Cpus{0, 2}));
    EXPECT_EQ(report.unusable, Cpus{8});
    EXPECT_EQ(report.errors, 0U);
  }
}

// Catches a run that tells of a CPU which its thread has not been on.
TEST_F(ProcessorEngineTest, ACpuThatGoesAwayMeanwhileIsNotTested) {
  std::atomic<int> binds{0};
  surroundings.bind = [&](unsigned cpu) {
    return FaultyProcessor::binder()(cpu) && (cpu != 1 || ++binds == 1);
  };
  plan.cpus = {0, 1, 2};
  const ProcessorReport report = run();
  EXPECT_EQ(report.tested, (Cpus{0, 2}));
  EXPECT_EQ(report.unusable, Cpus{1});
}

// Catches a process that ends by a signal, as a faulty processor would have it, where the system
// lets it have few threads.
TEST_F(ProcessorEngineTest, AThreadThatCannotBeStartedIsToldAndTheOthersAreTested) {
  for (const int most : {0, 1, 2}) {
    int started = 0;
    surroundings.start = [&](std::function<void()> work) {
      if (started++ >= most) throw std::system_error(EAGAIN, std::generic_category());
      return std::thread(std::move(work));
    };
    plan.cpus = {0, 1, 2};
    const ProcessorReport report = run();
    EXPECT_EQ(report.tested.size(), static_cast<std::size_t>(most));
    EXPECT_EQ(report.unusable.size(), static_cast<std::size_t>(3 - most));
    EXPECT_EQ(report.unstarted, static_cast<std::size_t>(3 - most));
    EXPECT_EQ(report.errors, 0U);
  }
}

/// Stops when it hears that something is tried again.
class ImpatientControl : public FakeControl {
 public:
  void status(const std::string& text) override {
    if (text.find("again") != std::string::npos) m_stops = true;
  }
  bool stopRequested() const override { return m_stops; }

 private:
  std::atomic<bool> m_stops{false};
};

TEST_F(ProcessorEngineTest, ARequestEndsTheTryingAgainAndTheFaultsAreTold) {
  faulty.cpus = {3};
  ImpatientControl impatient;
  const ProcessorReport report = ProcessorEngine(surroundings).run(plan, impatient);
  EXPECT_GE(report.errors, 1U);
  ASSERT_FALSE(report.findings.empty());
  EXPECT_EQ(report.findings[0].verdict.place.cpu, 3U);
  EXPECT_FALSE(report.findings[0].verdict.wasTried);
  EXPECT_EQ(report.findings[0].verdict.whyLeftOut, "the run was stopped");
  EXPECT_EQ(report.findings[0].verdict.tries, 0U);
}

TEST_F(ProcessorEngineTest, WithoutAnyCpuNothingIsTested) {
  plan.cpus = {8, 9};
  const ProcessorReport report = run();
  EXPECT_TRUE(report.tested.empty());
  EXPECT_EQ(report.unusable, (Cpus{8, 9}));
  EXPECT_EQ(report.busy, 0);
}

TEST_F(ProcessorEngineTest, ARequestEndsTheRunInGoodOrder) {
  plan.targetSeconds = 1e9;
  control.stopAfter(0);
  EXPECT_TRUE(run().stopped);
}

// Catches a mean that hides one thread which has to wait among many that need not.
TEST_F(ProcessorEngineTest, HowBusyIsToldOfTheThreadThatWasLeastSo) {
  surroundings.threadSeconds = [this] {
    return (FaultyProcessor::current() == 3 ? 0.1 : 0.9) * secondsPerLook * looks;
  };
  plan.targetSeconds = 1;
  const double busy = run().busy;
  EXPECT_GT(busy, 0.05);
  EXPECT_LT(busy, 0.15);
}

TEST_F(ProcessorEngineTest, HowBusyTheThreadsWereIsMeasured) {
  plan.cpus = {0};
  plan.targetSeconds = 0.5;
  const double busy = run().busy;
  EXPECT_GT(busy, 0.4);
  EXPECT_LT(busy, 0.6);
}

TEST_F(ProcessorEngineTest, ProgressStaysWithinItsBounds) {
  plan.targetSeconds = 0.5;
  run();
  const auto& fractions = control.fractions();
  ASSERT_FALSE(fractions.empty());
  EXPECT_GE(*std::min_element(fractions.begin(), fractions.end()), 0);
  EXPECT_LE(*std::max_element(fractions.begin(), fractions.end()), 1);
}

}  // namespace
}  // namespace providers
