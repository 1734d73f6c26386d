#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <set>

#include "providers/processor/ProcessorEngine.h"
#include "tests/providers/common/FakeControl.h"

namespace providers {
namespace {

using Cpus = std::vector<unsigned>;

thread_local unsigned boundCpu = 0;
std::atomic<int> runs{0};

std::optional<Mismatch> right(std::uint64_t seed, ResultTap& tap) {
  ++runs;
  return compare(seed, tap.pass(seed));
}

std::optional<Mismatch> wrongOnCpu5(std::uint64_t seed, ResultTap&) {
  return boundCpu == 5 ? compare(seed, seed ^ 8) : std::nullopt;
}

class ProcessorEngineTest : public ::testing::Test {
 protected:
  ProcessorEngineTest() {
    runs = 0;
    surroundings.bind = [this](unsigned cpu) {
      boundCpu = cpu;
      return unusable.count(cpu) == 0;
    };
    surroundings.clock = [this] { return secondsPerLook * looks++; };
    surroundings.operations = {{"Right", right}, {"Right too", right}};
    surroundings.tap = &tap;
    plan.targetSeconds = 0;  // once each
  }
  ProcessorReport run(const Cpus& cpus) {
    return ProcessorEngine(surroundings).run(cpus, plan, control);
  }

  std::set<unsigned> unusable;
  std::atomic<int> looks{0};
  double secondsPerLook = 0.001;
  ResultTap tap;
  ProcessorSurroundings surroundings;
  ProcessorPlan plan;
  FakeControl control;
};

TEST_F(ProcessorEngineTest, EveryOperationIsDoneOnEveryCpu) {
  const ProcessorReport report = run({0, 4, 5});
  EXPECT_EQ(report.tested, (Cpus{0, 4, 5}));
  EXPECT_EQ(report.operations, 2U);
  EXPECT_EQ(report.fewestRuns, 2U);
  EXPECT_EQ(report.mostRuns, 2U);
  EXPECT_EQ(runs, 6);
  EXPECT_EQ(report.errors, 0U);
}

TEST_F(ProcessorEngineTest, OperationsAreRepeatedForTheTargetTime) {
  plan.targetSeconds = 0.5;
  const ProcessorReport report = run({0});
  EXPECT_GT(report.fewestRuns, 20U);
  EXPECT_GE(report.seconds, 0.45);
}

TEST_F(ProcessorEngineTest, AWrongResultNamesCpuAndOperation) {
  surroundings.operations.push_back({"Wrong", wrongOnCpu5});
  const ProcessorReport report = run({4, 5, 6});
  EXPECT_EQ(report.errors, 1U);
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_EQ(report.faults[0].cpus, Cpus{5});
  EXPECT_EQ(report.faults[0].operation, "Wrong");
  EXPECT_EQ(report.faults[0].mismatch.expected ^ report.faults[0].mismatch.actual, 8U);
}

class SpoilingTap : public ResultTap {
 public:
  std::uint64_t pass(std::uint64_t result) override { return result + 1; }
};

TEST_F(ProcessorEngineTest, AFaultOfAllResultsIsFoundEverywhere) {
  SpoilingTap spoiling;
  surroundings.tap = &spoiling;
  const ProcessorReport report = run({0, 1});
  EXPECT_EQ(report.errors, 5U);
  EXPECT_EQ(report.faults.back().operation, "Message exchange");
  EXPECT_EQ(report.faults.back().cpus, (Cpus{0, 1}));
}

TEST_F(ProcessorEngineTest, TheFirstErrorEndsTheRunWhereThatIsWanted) {
  SpoilingTap spoiling;
  surroundings.tap = &spoiling;
  plan.haltOnError = true;
  const ProcessorReport report = run({0});
  EXPECT_EQ(report.errors, 1U);
  EXPECT_FALSE(report.stopped);
}

TEST_F(ProcessorEngineTest, ACpuThatCannotBeUsedIsToldAndTheOthersAreTested) {
  unusable = {1};
  const ProcessorReport report = run({0, 1, 2});
  EXPECT_EQ(report.tested, (Cpus{0, 2}));
  EXPECT_EQ(report.unusable, Cpus{1});
}

TEST_F(ProcessorEngineTest, NeighboursExchangeMessages) {
  plan.targetSeconds = 0.2;
  EXPECT_GT(run({0, 1}).messages, 100U);
  EXPECT_EQ(run({0}).messages, 0U);
}

TEST_F(ProcessorEngineTest, ARequestEndsTheRunInGoodOrder) {
  plan.targetSeconds = 1e9;
  control.stopAfter(0);
  const ProcessorReport report = run({0, 1});
  EXPECT_TRUE(report.stopped);
  EXPECT_EQ(report.messages, 0U);
}

TEST_F(ProcessorEngineTest, LessCoverageLeavesOperationsOutEvenly) {
  surroundings.operations.assign(10, {"Right", right});
  struct Row {
    unsigned percent;
    std::size_t operations;
  };
  for (const Row& row : {Row{100, 10}, Row{50, 6}, Row{1, 1}}) {
    plan.coveragePercent = row.percent;
    EXPECT_EQ(run({0}).operations, row.operations) << row.percent;
  }
}

TEST_F(ProcessorEngineTest, ProgressStaysWithinItsBounds) {
  plan.targetSeconds = 0.5;
  run({0, 1});
  const auto& fractions = control.fractions();
  ASSERT_FALSE(fractions.empty());
  EXPECT_GE(*std::min_element(fractions.begin(), fractions.end()), 0);
  EXPECT_LE(*std::max_element(fractions.begin(), fractions.end()), 1);
}

}  // namespace
}  // namespace providers
