#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "providers/memory/engine/MemoryEngine.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/memory/engine/FaultyKernels.h"
#include "tests/providers/memory/engine/TestWords.h"

namespace providers::memory {
namespace {

constexpr std::size_t kWords = 8192;
constexpr std::uint64_t kBit63 = std::uint64_t{1} << 63;

class EngineTest : public ::testing::Test {
 protected:
  std::vector<Sweep> sequence(TestType type, std::size_t count = kWords) const {
    return makeSequence(type, {words.get(), count, 42, 10});
  }
  EngineSetup setup(unsigned threads, std::size_t count, const Kernels& kernels) {
    EngineSetup made;
    made.regions = evenRegions(count, threads);
    made.kernels = &kernels;
    made.cacheBytes = cacheBytes;
    made.haltOnError = haltOnError;
    made.clock = [this] { return now += 1; };
    return made;
  }
  /// On one thread, in memory with a fault.
  MemoryReport run(TestType type, const FaultModel& model) {
    ThreadTeam team(1, [](unsigned) {});
    FaultyResting resting(model, words.get());
    MemoryEngine engine(words.get(), kWords, team, resting, setup(1, kWords, faultyKernels(model)));
    return engine.run(sequence(type), control);
  }
  /// On several threads, with the loops of this processor.
  MemoryReport runTeam(TestType type, unsigned threads, std::size_t count = kWords) {
    ThreadTeam team(threads, [](unsigned) {});
    FaultyResting resting(settling, words.get());
    MemoryEngine engine(words.get(), count, team, resting, setup(threads, count, bestKernels()));
    const MemoryReport report = engine.run(sequence(type, count), control);
    rested = resting.seconds();
    return report;
  }

  TestWords words{kWords};
  FaultModel settling;
  FakeControl control;
  double now = 0;
  double rested = 0;
  std::size_t cacheBytes = 0;
  bool haltOnError = false;
};

class EachTest : public EngineTest, public ::testing::WithParamInterface<TestType> {};

TEST_P(EachTest, IsSilentOnGoodMemory) {
  for (const unsigned threads : {1, 2, 3, 7}) {
    for (const std::size_t count : {kWords, kWords - 8, std::size_t{8}, std::size_t{24}}) {
      const MemoryReport report = runTeam(GetParam(), threads, count);
      EXPECT_EQ(report.errors, 0U);
      EXPECT_TRUE(report.pages.empty());
      EXPECT_EQ(report.sweeps, report.plannedSweeps);
      EXPECT_EQ(report.testedBytes, count * 8);
      EXPECT_EQ(report.bytesChecked, (report.sweeps - 1) * count * 8);
      EXPECT_EQ(report.bytesWritten, report.bytesChecked);
    }
  }
}

TEST_P(EachTest, IsSilentOnGoodMemoryWhateverTheCachesHold) {
  for (const std::size_t bytes : {std::size_t{64}, kWords * 4, kWords * 100}) {
    cacheBytes = bytes;
    EXPECT_EQ(runTeam(GetParam(), 2).errors, 0U);
  }
}

TEST_P(EachTest, LeavesWordsThatMakeNoWholeLineAlone) {
  words[16] = 77;
  EXPECT_EQ(runTeam(GetParam(), 1, 23).testedBytes, 128U);
  EXPECT_EQ(words[16], 77U);
}

TEST_P(EachTest, FindsAFlippedBitInTheFirstAndTheLastWordOfAThread) {
  for (const std::size_t word : {std::size_t{0}, kWords / 2 - 1, kWords / 2, kWords - 1}) {
    bool once = true;
    settling.settled = [&](std::uint64_t* w) {
      if (std::exchange(once, false)) w[word] ^= kBit63;
    };
    const MemoryReport report = runTeam(GetParam(), 2);
    EXPECT_EQ(report.errors, 1U) << word;
    EXPECT_EQ(report.bits, kBit63);
    ASSERT_EQ(report.pages.size(), 1U);
    EXPECT_EQ(report.pages[0].first.offset, word * 8);
    EXPECT_EQ(report.pages[0].first.expected ^ report.pages[0].first.actual, kBit63);
    EXPECT_EQ(report.pages[0].first.sweep, 1U);
  }
}

TEST_P(EachTest, RaisesTheProgressToTheEnd) {
  runTeam(GetParam(), 2);
  const auto& fractions = control.fractions();
  EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
  EXPECT_DOUBLE_EQ(fractions.back(), 1);
}

TEST_P(EachTest, EndsWhenItIsAskedTo) {
  control.stopAfter(1);
  const MemoryReport report = runTeam(GetParam(), 2);
  EXPECT_TRUE(report.stopped);
  EXPECT_LT(report.sweeps, report.plannedSweeps);
}

TEST_P(EachTest, EndsAtTheFirstErrorWhereThatIsWanted) {
  haltOnError = true;
  settling.settled = [](std::uint64_t* w) { w[3] ^= 1; };
  const MemoryReport report = runTeam(GetParam(), 2);
  EXPECT_EQ(report.errors, 1U);
  EXPECT_FALSE(report.stopped);
  EXPECT_LE(report.sweeps, 2U);
}

INSTANTIATE_TEST_SUITE_P(All, EachTest, ::testing::ValuesIn(kAllTestTypes));

// What each kind of fault is found by. The faults are in single cells, lines or words of a memory
// that works otherwise.

constexpr std::size_t kVictim = 5000;
constexpr std::size_t kNeighbour = 5003;  // in the same line

bool isIn(std::size_t word, std::size_t line) { return word / kLineWords == line; }

FaultModel stuckAt(bool value, std::uint64_t bit) {
  FaultModel model;
  model.written = [=](std::uint64_t* w, std::size_t line, const std::uint64_t*) {
    if (isIn(kVictim, line)) w[kVictim] = value ? w[kVictim] | bit : w[kVictim] & ~bit;
  };
  return model;
}

/// The victim's bit turns over whenever that of the other word rises or falls.
FaultModel coupled(std::size_t aggressor) {
  FaultModel model;
  model.written = [=](std::uint64_t* w, std::size_t line, const std::uint64_t* before) {
    if (!isIn(aggressor, line)) return;
    if ((w[aggressor] ^ before[aggressor % kLineWords]) & 16U) w[kVictim] ^= 16U;
  };
  return model;
}

/// The victim's bits cannot be ones where those of the other word are zeros.
FaultModel pulledDown() {
  FaultModel model;
  model.written = [](std::uint64_t* w, std::size_t line, const std::uint64_t*) {
    if (isIn(kVictim, line)) w[kVictim] &= w[kNeighbour];
  };
  return model;
}

/// What is written to the one line is written to the other too: an address bit is not heeded.
FaultModel addressLineLost(unsigned bit) {
  FaultModel model;
  model.written = [bit](std::uint64_t* w, std::size_t line, const std::uint64_t*) {
    const std::size_t other = line ^ std::size_t{1} << bit;
    std::copy_n(w + line * kLineWords, kLineWords, w + other * kLineWords);
  };
  return model;
}

/// Of two address bits that are tied together, each is set as soon as one is.
FaultModel addressLinesShorted(unsigned a, unsigned b) {
  FaultModel model;
  model.written = [a, b](std::uint64_t* w, std::size_t line, const std::uint64_t* before) {
    const std::size_t both = std::size_t{1} << a | std::size_t{1} << b;
    if ((line & both) == 0 || (line & both) == both) return;
    std::copy_n(w + line * kLineWords, kLineWords, w + (line | both) * kLineWords);
    std::copy_n(before, kLineWords, w + line * kLineWords);
  };
  return model;
}

FaultModel fading(bool value) {
  FaultModel model;
  model.rested = [value](std::uint64_t* w, double) {
    w[kVictim] = value ? w[kVictim] & ~kBit63 : w[kVictim] | kBit63;
  };
  return model;
}

FaultModel flippedOnce() {
  FaultModel model;
  auto settled = std::make_shared<unsigned>(0);
  model.settled = [settled](std::uint64_t* w) {
    if (++*settled == 2) w[kVictim] ^= 1U << 20;
  };
  return model;
}

struct FaultRow {
  const char* name;
  FaultModel (*model)();
  std::string foundBy;  ///< a letter for each test, in their order; '-' where it is silent
  std::uint64_t bits;   ///< those that are wrong, all of them and no others; 0: any
  bool placed = true;   ///< whether the only page is the victim's
};

class FaultKinds : public EngineTest, public ::testing::WithParamInterface<FaultRow> {};

TEST_P(FaultKinds, AreFoundAndPlaced) {
  std::string foundBy;
  for (const TestType type : kAllTestTypes) {
    const FaultModel model = GetParam().model();
    std::fill_n(words.get(), kWords, 0);
    const MemoryReport report = run(type, model);
    foundBy += report.errors ? "DAPSI01RF"[static_cast<int>(type)] : '-';
    if (report.errors == 0) continue;
    if (GetParam().bits) {
      EXPECT_EQ(report.bits, GetParam().bits) << foundBy;
    }
    if (!GetParam().placed) continue;
    ASSERT_EQ(report.pages.size(), 1U) << foundBy;
    EXPECT_EQ(report.pages[0].first.offset, kVictim * 8) << foundBy;
  }
  EXPECT_EQ(foundBy, GetParam().foundBy);
}

constexpr auto kOneBit = std::uint64_t{1} << 20;

INSTANTIATE_TEST_SUITE_P(
    Table, FaultKinds,
    ::testing::Values(
        FaultRow{"StuckAtOne", [] { return stuckAt(true, kBit63); }, "DAPSI01RF", kBit63},
        FaultRow{"StuckAtZero", [] { return stuckAt(false, kBit63); }, "DAPSI01RF", kBit63},
        FaultRow{"BitNoughtStuck", [] { return stuckAt(true, 1); }, "DAPSI01RF", 1},
        FaultRow{"CoupledToALaterWord", [] { return coupled(kVictim + 100); }, "DAPSI01RF", 16},
        FaultRow{"CoupledToAnEarlierWord", [] { return coupled(kVictim - 100); }, "DAPSI01RF", 16},
        FaultRow{"PulledDownByItsNeighbour", pulledDown, "D-PSI--R-", 0},
        FaultRow{"AddressLineLost", [] { return addressLineLost(7); }, "DAPSI01RF", 0, false},
        FaultRow{"AddressLinesShorted", [] { return addressLinesShorted(2, 9); }, "DAPSI01RF", 0,
                 false},
        FaultRow{"OneFades", [] { return fading(true); }, "--------F", kBit63},
        FaultRow{"ZeroFades", [] { return fading(false); }, "--------F", kBit63},
        FaultRow{"FlippedOnce", flippedOnce, "DAPSI01RF", kOneBit}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(EngineTest, EveryErrorCountsAndIsKeptByPage) {
  bool once = true;
  settling.settled = [&](std::uint64_t* w) {
    if (!std::exchange(once, false)) return;
    for (std::size_t i = 0; i < 40; ++i) w[i] ^= 1;
    w[512] ^= 2;
  };
  const MemoryReport report = runTeam(TestType::MovingInversionsZeros, 2);
  EXPECT_EQ(report.errors, 41U);
  EXPECT_EQ(report.bits, 3U);
  ASSERT_EQ(report.pages.size(), 2U);
  EXPECT_EQ(report.pages[0].errors, 40U);
  EXPECT_EQ(report.pages[1].offset, 4096U);
}

TEST_F(EngineTest, AWordThatWasWrongOnlyWhenItWasReadFirstIsAnError) {
  FaultModel model;
  Kernels kernels = faultyKernels(model);
  kernels.check = [](const std::uint64_t*, LineRange lines, Direction, const Pattern&) {
    const std::size_t end = lines.first + lines.count;
    return lines.first <= 100 && end > 100 ? end - 1 - 100 : lines.count;
  };
  ThreadTeam team(1, [](unsigned) {});
  FaultyResting resting(model, words.get());
  MemoryEngine engine(words.get(), kWords, team, resting, setup(1, kWords, kernels));
  const MemoryReport report = engine.run(sequence(TestType::MovingInversionsZeros), control);
  EXPECT_EQ(report.errors, 1U);
  ASSERT_EQ(report.pages.size(), 1U);
  EXPECT_EQ(report.pages[0].first.offset, 100 * kLineBytes);
  EXPECT_EQ(report.pages[0].first.actual, report.pages[0].first.expected);
}

std::vector<bool> g_writtenPast;  ///< by line: whether it was written past the caches at last

template <bool isPast>
std::size_t replaceAndNote(std::uint64_t* words, LineRange lines, Direction direction,
                           const Pattern& expected, const Pattern& next) {
  for (std::size_t i = lines.first; i < lines.first + lines.count; ++i) g_writtenPast[i] = isPast;
  return scalarKernels()->checkAndWrite(words, lines, direction, expected, next);
}

// Catches a test whose end is checked in the caches, and never in memory; and one that goes the
// slow way past the caches all the time.
TEST_F(EngineTest, WhatTheCachesCanHoldOfASweepsEndIsWrittenPastThem) {
  constexpr std::size_t kLines = 3 * 4096, kRegion = kLines / 2, kHeld = 1024;
  TestWords many(kLines * kLineWords);
  Kernels kernels = *scalarKernels();
  kernels.checkAndWrite = replaceAndNote<false>;
  kernels.checkAndStream = replaceAndNote<true>;
  g_writtenPast.assign(kLines, false);
  cacheBytes = 2 * kHeld * kLineBytes;  // of both threads
  ThreadTeam team(2, [](unsigned) {});
  FaultyResting resting(settling, many.get());
  MemoryEngine engine(many.get(), kLines * kLineWords, team, resting,
                      setup(2, kLines * kLineWords, kernels));
  const Pattern pattern = constantPattern(0);
  Sweep fill, replace;
  fill.next = pattern;
  replace = {Sweep::Action::CheckAndWrite, Direction::Up, pattern, pattern.inverse(), 0};
  EXPECT_EQ(engine.run({fill, replace}, control).errors, 0U);
  for (const std::size_t end : {kRegion, kLines}) {
    EXPECT_FALSE(g_writtenPast[end - kRegion]);
    EXPECT_TRUE(std::all_of(g_writtenPast.begin() + static_cast<std::ptrdiff_t>(end - kHeld),
                            g_writtenPast.begin() + static_cast<std::ptrdiff_t>(end),
                            [](bool isPast) { return isPast; }))
        << end;
  }
}

TEST_F(EngineTest, TimeAtRestIsNoTimeOfTheSweeps) {
  const MemoryReport report = runTeam(TestType::BitFade, 2);
  EXPECT_NEAR(rested, 20, 1e-9);
  EXPECT_DOUBLE_EQ(report.seconds, 3) << "a second each sweep, by this clock";
}

TEST_F(EngineTest, ARequestIsHeardWhileTheContentRests) {
  control.stopAfter(5);
  EXPECT_TRUE(runTeam(TestType::BitFade, 2).stopped);
  EXPECT_LT(rested, 1);
}

TEST_F(EngineTest, SweepsAreCountedForWhoWatches) {
  runTeam(TestType::MovingInversionsOnes, 1);
  EXPECT_EQ(control.texts(),
            (std::vector<std::string>{"Sweep 1 of 6", "Sweep 2 of 6", "Sweep 3 of 6",
                                      "Sweep 4 of 6", "Sweep 5 of 6", "Sweep 6 of 6"}));
}

TEST(EvenRegions, AreNeighboursAndShareAll) {
  for (const unsigned threads : {1, 2, 3, 64}) {
    for (const std::size_t words : {0, 8, 15, 1000, 8192}) {
      std::size_t next = 0;
      for (const LineRange region : evenRegions(words, threads)) {
        EXPECT_EQ(region.first, next);
        EXPECT_LE(region.count, words / 8 / threads + 1);
        next += region.count;
      }
      EXPECT_EQ(next, words / 8);
    }
  }
}

}  // namespace
}  // namespace providers::memory
