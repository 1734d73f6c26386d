#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <set>

#include "providers/processor/engine/ExchangeEngine.h"
#include "providers/processor/engine/Pairings.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/processor/FaultyProcessor.h"

namespace providers {
namespace {

using Cpus = std::vector<unsigned>;

TEST(Pairings, EachMeetsEachOtherOnceAndNobodyTwiceInARound) {
  for (unsigned count = 0; count < 10; ++count) {
    Cpus cpus;
    for (unsigned i = 0; i < count; ++i) cpus.push_back(10 + i);
    std::set<std::pair<unsigned, unsigned>> met;
    for (const Pairing& round : pairings(cpus)) {
      std::set<unsigned> busy;
      for (const auto& [one, other] : round) {
        EXPECT_TRUE(busy.insert(one).second && busy.insert(other).second);
        EXPECT_TRUE(met.insert(std::minmax(one, other)).second);
      }
      EXPECT_EQ(round.size(), count / 2) << "nobody pauses who could be busy";
    }
    EXPECT_EQ(met.size(), count < 2 ? 0 : count * (count - 1) / 2) << count;
  }
}

/// Words that arrive at one CPU, or from it, arrive wrong from a certain number of them on.
class BadReader : public MessageTap {
 public:
  std::uint64_t pass(unsigned reader, std::uint64_t word) const override {
    if (readers.count(reader) == 0) return word;
    const int number = m_words++;
    return number >= first && number <= last ? word ^ 1 : word;
  }
  std::set<unsigned> readers;
  int first = 0;
  int last = 1 << 30;

 private:
  mutable std::atomic<int> m_words{0};
};

class ExchangeEngineTest : public ::testing::Test {
 protected:
  ExchangeEngineTest() {
    plan.cpus = {0, 1, 2, 3};
    plan.targetSeconds = 0;
  }
  ExchangeReport run() {
    const ExchangeSurroundings surroundings{
        FaultyProcessor::binder(), [this] { return secondsPerLook * looks++; }, &tap, start};
    return exchangeAll(surroundings, plan, control);
  }
  /// So many threads can be started, and no more.
  void allowThreads(int most) {
    start = [this, most](std::function<void()> work) {
      if (started++ >= most) throw std::system_error(EAGAIN, std::generic_category());
      return std::thread(std::move(work));
    };
  }
  StartThread start = startThread;
  std::atomic<int> started{0};
  double secondsPerLook = 0.001;
  std::atomic<int> looks{0};
  BadReader tap;
  ExchangePlan plan;
  FakeControl control;
};

TEST_F(ExchangeEngineTest, EveryPairExchangesMessages) {
  const ExchangeReport report = run();
  EXPECT_EQ(report.pairs, 6U);
  EXPECT_GE(report.messages, 6 * 150U);
  EXPECT_EQ(report.errors, 0U);
  EXPECT_EQ(report.tested, plan.cpus);
  EXPECT_EQ(control.fractions().back(), 1.0);
}

TEST_F(ExchangeEngineTest, AnOddOneTakesItsTurn) {
  plan.cpus = {0, 1, 2};
  EXPECT_EQ(run().pairs, 3U);
}

TEST_F(ExchangeEngineTest, ACpuThatGetsMessagesWrongIsTheOneThatIsWrongWithAll) {
  tap.readers = {2};
  const ExchangeReport report = run();
  EXPECT_EQ(report.errors, 3U);
  ASSERT_EQ(report.faults.size(), 3U);
  for (const ExchangeFault& fault : report.faults) {
    EXPECT_EQ(fault.wrong.reader, 2U);
    EXPECT_TRUE(fault.comesBack);
    EXPECT_TRUE(fault.hadOthers);
    EXPECT_EQ(fault.firstWithOthers, fault.cpu1 == 2);
    EXPECT_EQ(fault.secondWithOthers, fault.cpu2 == 2);
  }
}

TEST_F(ExchangeEngineTest, AWrongWordThatHappensOnceDoesNotComeBack) {
  tap.readers = {2};
  tap.first = tap.last = 40;
  const ExchangeReport report = run();
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_FALSE(report.faults[0].comesBack);
  EXPECT_FALSE(report.faults[0].firstWithOthers || report.faults[0].secondWithOthers);
}

TEST_F(ExchangeEngineTest, TwoAloneHaveNoOthers) {
  tap.readers = {0};
  plan.cpus = {0, 1};
  const ExchangeReport report = run();
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_FALSE(report.faults[0].hadOthers);
}

TEST_F(ExchangeEngineTest, TheFirstErrorEndsTheRunWhereThatIsWanted) {
  tap.readers = {0, 1, 2, 3};
  plan.haltOnError = true;
  EXPECT_LE(run().errors, 2U);
  plan.haltOnError = false;
  EXPECT_EQ(run().errors, 6U);
}

TEST_F(ExchangeEngineTest, ACpuThatCannotBeUsedIsTold) {
  plan.cpus = {0, 1, 8};
  const ExchangeReport report = run();
  EXPECT_EQ(report.tested, (Cpus{0, 1}));
  EXPECT_EQ(report.unusable, Cpus{8});
  EXPECT_EQ(report.pairs, 1U);
  EXPECT_EQ(report.errors, 0U);
}

/// Counts how often it is asked.
class AskedControl : public FakeControl {
 public:
  bool stopRequested() const override {
    ++questions;
    return false;
  }
  mutable std::atomic<unsigned> questions{0};
};

// Catches hundreds of threads that wait for each other at one lock, in place of exchanging
// messages.
TEST_F(ExchangeEngineTest, WhoMayStopItIsAskedFromTimeToTimeAndNotForEachMessage) {
  plan.cpus = {0, 1};
  plan.targetSeconds = 5;
  AskedControl asked;
  const ExchangeSurroundings surroundings{FaultyProcessor::binder(),
                                          [this] { return secondsPerLook * looks++; }, &tap, start};
  const ExchangeReport report = exchangeAll(surroundings, plan, asked);
  EXPECT_GT(report.messages, 1000U);
  EXPECT_GT(asked.questions, 10U);
  EXPECT_LT(asked.questions, report.messages / 5);
}

// Catches a process that ends by a signal, as a faulty processor would have it.
TEST_F(ExchangeEngineTest, PairsThatNoThreadsCanBeStartedForAreCounted) {
  for (const int most : {0, 1, 2, 4}) {
    started = 0;
    allowThreads(most);
    const ExchangeReport report = run();
    EXPECT_GE(report.pairs, most < 4 ? 0U : 1U) << most;
    EXPECT_EQ(report.pairs + report.unstarted, 6U) << most;
    EXPECT_EQ(report.errors, 0U) << most;
  }
}

TEST_F(ExchangeEngineTest, WhatCannotBeTriedAgainForLackOfThreadsIsTold) {
  plan.cpus = {0, 1};
  tap.readers = {0};
  allowThreads(2);
  const ExchangeReport report = run();
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_FALSE(report.faults[0].wasTried);
  EXPECT_EQ(report.faults[0].whyLeftOut, "the system started no more threads");
}

// Catches minutes of trying on a machine of hundreds of processors, and half of a comparison.
TEST_F(ExchangeEngineTest, WhatTakesTooLongToTryWithOthersIsLeftOutAndTold) {
  tap.readers = {2};
  tap.first = tap.last = 40;
  plan.targetSeconds = -1;
  secondsPerLook = 11;  // three looks while something is tried again
  const ExchangeReport report = run();
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_TRUE(report.faults[0].wasTried);
  EXPECT_FALSE(report.faults[0].hadOthers);
  EXPECT_EQ(report.faults[0].leftOut, 2U);
  EXPECT_EQ(report.faults[0].whyLeftOut, "it would take too long");
}

TEST_F(ExchangeEngineTest, ARequestEndsTheTryingAgain) {
  plan.cpus = {0, 1};
  tap.readers = {1};
  control.stopAfter(2);
  const ExchangeReport report = run();
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_FALSE(report.faults[0].wasTried);
  EXPECT_EQ(report.faults[0].whyLeftOut, "the run was stopped");
}

TEST_F(ExchangeEngineTest, ARequestEndsTheRun) {
  plan.targetSeconds = 1e9;
  control.stopAfter(10);
  EXPECT_TRUE(run().stopped);
}

}  // namespace
}  // namespace providers
