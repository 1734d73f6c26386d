#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>

#include "providers/common/SplitMix.h"
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
  EXPECT_EQ(report.patterns[1].errors, 0U);
  ASSERT_EQ(report.faults.size(), 16U);
  for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(report.faults[i].offset, i * 8);
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

TEST_F(MemoryEngineTest, GoodMemoryIsGoneOverWholeWhereAnErrorWouldEndTheRun) {
  plan.haltOnError = true;
  plan.targetSeconds = 10;
  FaultyMemory memory;
  const MemoryReport report = run(memory);
  EXPECT_EQ(report.rounds, 2U);
  EXPECT_EQ(memory.rests(), 2 * kSweeps);
  EXPECT_EQ(report.errors, 0U);
}

/// What each pattern leaves at its four rests: itself, its inverse, itself, and itself once more.
class Content : public MemoryEngineTest {
 protected:
  using Pattern = std::function<std::uint64_t(std::size_t index)>;

  /// Compares all words at the rests of pattern `pattern` in round `round`.
  void expectContent(unsigned round, unsigned pattern, const Pattern& expected) {
    constexpr unsigned kRestsOfPattern = 4;
    const unsigned first = round * kSweeps + pattern * kRestsOfPattern;
    unsigned rests = 0, wrong = 0;
    plan.targetSeconds = 5.0 * (round + 1);
    run([&](std::uint64_t* w) {
      const unsigned rest = rests++ - first;
      if (rest >= kRestsOfPattern) return;
      for (std::size_t i = 0; i < kWords; ++i)
        wrong += w[i] != (rest == 1 ? ~expected(i) : expected(i));
    });
    EXPECT_GE(rests, first + kRestsOfPattern);
    EXPECT_EQ(wrong, 0U) << "round " << round << ", pattern " << pattern;
  }
};

TEST_F(Content, OfWalkingBitsMovesOnEachRound) {
  expectContent(0, 0, [](std::size_t i) { return std::uint64_t{1} << i % 64; });
  expectContent(1, 0, [](std::size_t i) { return std::uint64_t{1} << (i + 7) % 64; });
  expectContent(3, 0, [](std::size_t i) { return std::uint64_t{1} << (i + 21) % 64; });
}

TEST_F(Content, OfSelfAddressingIsTheAddress) {
  expectContent(0, 1, [this](std::size_t i) {
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(words.get() + i));
  });
}

TEST_F(Content, OfMovingInversionsIsOneOfTwoInTurn) {
  expectContent(0, 2, [](std::size_t) { return 0; });
  expectContent(1, 2, [](std::size_t) { return 0x5555555555555555; });
  expectContent(2, 2, [](std::size_t) { return 0; });
}

TEST_F(Content, OfTheCheckerboardDiffersFromWordToWord) {
  expectContent(0, 3,
                [](std::size_t i) { return i % 2 ? 0xAAAAAAAAAAAAAAAA : 0x5555555555555555; });
}

TEST_F(Content, OfTheRandomPatternBelongsToSeedAndRound) {
  plan.seed = 1234567;
  expectContent(0, 4, [](std::size_t i) { return splitMix(1234567, i); });
  expectContent(1, 4, [](std::size_t i) { return splitMix(1234568, i); });
}

struct RoundsRow {
  double target;  ///< in seconds; a pattern takes one, a round five
  unsigned rounds;
};

TEST_F(MemoryEngineTest, RoundsArePlannedForTheNearestTime) {
  for (const RoundsRow& row :
       {RoundsRow{5, 1}, RoundsRow{7.4, 1}, RoundsRow{7.5, 2}, RoundsRow{12.4, 2},
        RoundsRow{12.5, 3}, RoundsRow{5000, 1000}, RoundsRow{5005, 1000}, RoundsRow{1e9, 1000}}) {
    plan.targetSeconds = row.target;
    FaultyMemory memory;
    EXPECT_EQ(run(memory, 8).rounds, row.rounds) << row.target;
    EXPECT_EQ(memory.rests(), row.rounds * kSweeps) << row.target;
  }
}

TEST_F(MemoryEngineTest, AClockThatStandsStillMeansOneRound) {
  secondsPerLook = 0;
  FaultyMemory memory;
  const MemoryReport report = run(memory);
  EXPECT_EQ(report.rounds, 1U);
  EXPECT_EQ(report.patterns[0].seconds, 0);
}

TEST_F(MemoryEngineTest, TheTimeOfEachPatternIsAddedUp) {
  plan.targetSeconds = 10;
  FaultyMemory memory;
  for (const PatternResult& pattern : run(memory).patterns)
    EXPECT_EQ(pattern.seconds, 2) << pattern.name;
}

TEST_F(MemoryEngineTest, WordsThatMakeNoWholeLineAreLeftAlone) {
  FaultyMemory memory;
  plan.targetSeconds = 1;
  words[8] = 77;
  EXPECT_EQ(run(memory, 15).testedBytes, 64U);
  EXPECT_EQ(words[8], 77U);
}

TEST_F(MemoryEngineTest, TheProgressOfARoundIsThatOfItsSweeps) {
  FaultyMemory memory;
  plan.targetSeconds = 5;
  run(memory);
  // Twice as careful until the first pattern has told the speed.
  std::vector<double> expected{0.025, 0.05, 0.075, 0.1};
  for (unsigned sweep = 5; sweep <= kSweeps; ++sweep) expected.push_back(0.05 * sweep);
  ASSERT_EQ(control.fractions().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_DOUBLE_EQ(control.fractions()[i], expected[i]) << i;
}

/// Memory of which a sweep looks at the clock on its way.
class LargeMemory : public MemoryEngineTest {
 protected:
  static constexpr std::size_t kMega = std::size_t{1024} * 1024;

  LargeMemory() { many.reset(new (std::align_val_t(64)) std::uint64_t[4 * kMega]); }
  MemoryReport runOn(std::size_t count) {
    MemoryEngine engine(many.get(), count, memory, [this] { return now += secondsPerLook; });
    return engine.run(plan, control);
  }

  std::unique_ptr<std::uint64_t[], Free> many;
  FaultyMemory memory;
};

TEST_F(LargeMemory, IsAskedAboutAfterEachFourMebibytes) {
  control.stopAfter(8);
  EXPECT_TRUE(runOn(2 * kMega).stopped);
  EXPECT_EQ(memory.rests(), 1U) << "four questions on the way and one at the end of each sweep";
  ASSERT_EQ(control.fractions().size(), 9U);
  EXPECT_DOUBLE_EQ(control.fractions()[0], 0.25 / kSweeps / 2);
  EXPECT_DOUBLE_EQ(control.fractions()[8], 2.0 / kSweeps / 2);
}

TEST_F(LargeMemory, IsCutToWhatTheTimeAllowsInWholeLines) {
  secondsPerLook = 1;
  plan.targetSeconds = 5 * 0.70000005;  // of 4 Mi words: 2936013.0 and a bit
  const MemoryReport report = runOn(4 * kMega);
  EXPECT_EQ(report.rounds, 1U);
  EXPECT_EQ(report.testedBytes, 2936008U * 8);
  EXPECT_EQ(report.patterns[0].bytes, 4 * 4 * kMega * 8) << "before the speed was known";
  EXPECT_EQ(report.patterns[1].bytes, 4 * 2936008U * 8);
  EXPECT_EQ(memory.rests(), kSweeps);
  EXPECT_DOUBLE_EQ(control.fractions().back(), 1);
}

TEST(SplitMix, GivesTheKnownNumbersOfItsSeed) {
  EXPECT_EQ(splitMix(1234567, 0), 6457827717110365317U);
  EXPECT_EQ(splitMix(1234567, 1), 3203168211198807973U);
  EXPECT_EQ(splitMix(1234567, 2), 9817491932198370423U);
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
