#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>

#include "providers/memory/MemoryEngine.h"
#include "tests/providers/common/FakeControl.h"

namespace providers {
namespace {

constexpr std::size_t kWords = 4096;
constexpr unsigned kSweeps = 20;  // of a round

/// A memory with a fault: what `spoil` does to it takes place whenever its content rests.
class FaultyMemory : public MemorySettler {
 public:
  using Spoil = std::function<void(std::uint64_t* words)>;

  explicit FaultyMemory(Spoil spoil = {}) : m_spoil(std::move(spoil)) {}
  void settle(std::uint64_t* words, std::size_t) override {
    ++m_rests;
    if (m_spoil) m_spoil(words);
  }
  unsigned rests() const { return m_rests; }

 private:
  Spoil m_spoil;
  unsigned m_rests = 0;
};

class MemoryEngineTest : public ::testing::Test {
 protected:
  MemoryEngineTest() { words.reset(new (std::align_val_t(64)) std::uint64_t[kWords]); }

  MemoryReport run(FaultyMemory& memory, std::size_t count = kWords) {
    MemoryEngine engine(words.get(), count, memory, [this] { return now += secondsPerLook; });
    return engine.run(plan, control);
  }
  MemoryReport run(FaultyMemory::Spoil spoil) {
    FaultyMemory memory(std::move(spoil));
    return run(memory);
  }

  struct Free {
    void operator()(std::uint64_t* block) const {
      ::operator delete[](block, std::align_val_t(64));
    }
  };
  std::unique_ptr<std::uint64_t[], Free> words;
  double now = 0;
  double secondsPerLook = 1;
  MemoryPlan plan;
  FakeControl control;
};

TEST_F(MemoryEngineTest, GoodMemoryHasNoErrorsInAnyPattern) {
  FaultyMemory memory;
  const MemoryReport report = run(memory);
  EXPECT_EQ(report.errors, 0U);
  EXPECT_TRUE(report.faults.empty());
  ASSERT_EQ(report.patterns.size(), 5U);
  for (const PatternResult& pattern : report.patterns)
    EXPECT_EQ(pattern.bytes, report.rounds * 4 * kWords * 8) << pattern.name;
}

TEST_F(MemoryEngineTest, RoundsAreRepeatedForTheTargetTime) {
  FaultyMemory memory;
  plan.targetSeconds = 15;  // a pattern takes a second by this clock, a round five
  EXPECT_EQ(run(memory).rounds, 3U);
  EXPECT_EQ(memory.rests(), 3 * kSweeps);
}

TEST_F(MemoryEngineTest, TooSlowMemoryIsTestedOnceAndInPart) {
  constexpr std::size_t kMany = std::size_t{4} * 1024 * 1024;
  const std::unique_ptr<std::uint64_t[], Free> many(new (std::align_val_t(64))
                                                        std::uint64_t[kMany]);
  FaultyMemory memory;
  secondsPerLook = 10;
  MemoryEngine engine(many.get(), kMany, memory, [this] { return now += secondsPerLook; });
  const MemoryReport report = engine.run(plan, control);
  EXPECT_EQ(report.rounds, 1U);
  EXPECT_EQ(report.testedBytes, kMany * 8 / 2) << "not less than what makes sense";
}

TEST_F(MemoryEngineTest, ProgressRisesToTheEnd) {
  FaultyMemory memory;
  plan.targetSeconds = 15;
  run(memory);
  const auto& fractions = control.fractions();
  EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
  EXPECT_DOUBLE_EQ(fractions.back(), 1);
  EXPECT_GT(fractions.size(), 50U);
}

TEST_F(MemoryEngineTest, EachPatternIsNamedWhileItRuns) {
  FaultyMemory memory;
  plan.targetSeconds = 1;
  run(memory);
  EXPECT_EQ(control.texts(),
            (std::vector<std::string>{"Walking ones and zeros", "Self addressing",
                                      "Moving inversions", "Checkerboard", "Random"}));
}

struct FaultRow {
  const char* name;
  FaultyMemory::Spoil spoil;
  std::uint64_t offset;  ///< where the first fault is to be found
};

class MemoryFaults : public MemoryEngineTest, public ::testing::WithParamInterface<FaultRow> {};

TEST_P(MemoryFaults, AreFound) {
  const MemoryReport report = run(GetParam().spoil);
  ASSERT_GT(report.errors, 0U);
  EXPECT_EQ(report.faults.front().offset, GetParam().offset);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, MemoryFaults,
    ::testing::Values(
        FaultRow{"FlippedBit", [](std::uint64_t* w) { w[77] ^= 1; }, 77 * 8},
        FaultRow{"BitStuckAtOne", [](std::uint64_t* w) { w[5] |= 1ULL << 63; }, 5 * 8},
        FaultRow{"BitStuckAtZero", [](std::uint64_t* w) { w[0] &= ~(1ULL << 17); }, 0},
        FaultRow{"LastWord", [](std::uint64_t* w) { w[kWords - 1] ^= 1ULL << 40; },
                 (kWords - 1) * 8},
        FaultRow{"TwoAddressesOneCell", [](std::uint64_t* w) { w[1024] = w[2048]; }, 1024 * 8},
        FaultRow{"NeighbourPullsDown", [](std::uint64_t* w) { w[9] &= w[10]; }, 9 * 8},
        FaultRow{"WordLost", [](std::uint64_t* w) { w[300] = 0; }, 300 * 8}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(MemoryEngineTest, AFaultThatOnlyShowsAtRestOnceIsFound) {
  unsigned rests = 0;
  const MemoryReport report = run([&rests](std::uint64_t* w) {
    if (++rests == 19) w[8] ^= 4;
  });
  EXPECT_EQ(report.errors, 1U);
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_EQ(report.faults[0].pattern, "Random");
  EXPECT_EQ(report.faults[0].expected ^ report.faults[0].actual, 4U);
}

TEST_F(MemoryEngineTest, EveryErrorCountsAndTheFirstSixteenAreKept) {
  unsigned rests = 0;
  const MemoryReport report = run([&rests](std::uint64_t* w) {
    if (++rests == 1) {
      for (std::size_t i = 0; i < 40; ++i) w[i] ^= 1;
    }
  });
  EXPECT_EQ(report.errors, 40U);
  EXPECT_EQ(report.patterns[0].errors, 40U);
  EXPECT_EQ(report.faults.size(), 16U);
}

TEST_F(MemoryEngineTest, TheFirstErrorEndsTheRunWhereThatIsWanted) {
  plan.haltOnError = true;
  FaultyMemory memory([](std::uint64_t* w) { w[3] ^= 1; });
  const MemoryReport report = run(memory);
  EXPECT_EQ(report.errors, 1U);
  EXPECT_EQ(memory.rests(), 1U);
  EXPECT_FALSE(report.stopped);
  EXPECT_EQ(report.rounds, 0U);
}

TEST_F(MemoryEngineTest, ARequestEndsTheRunInGoodOrder) {
  FaultyMemory memory;
  control.stopAfter(3);
  const MemoryReport report = run(memory);
  EXPECT_TRUE(report.stopped);
  EXPECT_EQ(memory.rests(), 4U);
}

TEST_F(MemoryEngineTest, ARequestIsHeardWithinASweep) {
  constexpr std::size_t kMany = std::size_t{2} * 1024 * 1024;
  const std::unique_ptr<std::uint64_t[], Free> many(new (std::align_val_t(64))
                                                        std::uint64_t[kMany]);
  FaultyMemory memory;
  control.stopAfter(1);
  MemoryEngine engine(many.get(), kMany, memory, [this] { return now += secondsPerLook; });
  EXPECT_TRUE(engine.run(plan, control).stopped);
  EXPECT_EQ(memory.rests(), 0U);
}

TEST_F(MemoryEngineTest, AnotherSeedWritesOtherRandomNumbers) {
  const auto lastContent = [this](std::uint64_t seed) {
    FaultyMemory memory;
    plan.seed = seed;
    plan.targetSeconds = 1;
    run(memory);
    return words[0];
  };
  const std::uint64_t first = lastContent(1);
  EXPECT_NE(first, lastContent(2));
  EXPECT_EQ(first, lastContent(1));
}

}  // namespace
}  // namespace providers
