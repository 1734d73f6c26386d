#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "providers/disk/reading/ReadPass.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/disk/ScriptedDisk.h"

namespace providers::disk {
namespace {

constexpr std::uint32_t kRead = 64 * 1024;  // 128 blocks

ReadReport readAll(ScriptedDisk& disk, const ReadPlan& plan, RunControl& control) {
  ScriptedSource source(disk, {4, kRead});
  SequentialExtents::Sizes sizes;
  sizes.read = kRead;
  SequentialExtents extents({0, disk.bytes()}, disk.bytes(), sizes, 1);
  const ReadPass::Clock clock = [&disk] { return disk.now(); };
  return ReadPass(source, extents, plan, clock, control).run();
}

ReadReport readAll(ScriptedDisk& disk, const ReadPlan& plan = {}) {
  FakeControl control;
  return readAll(disk, plan, control);
}

TEST(ReadPass, ACleanDiskIsReadWholeAndGivesNoFault) {
  ScriptedDisk disk;
  const ReadReport report = readAll(disk);
  EXPECT_EQ(report.readBytes, disk.bytes());
  EXPECT_EQ(report.askedBytes, disk.bytes());
  EXPECT_TRUE(report.faults.empty());
  EXPECT_TRUE(report.slow.empty());
  EXPECT_FALSE(report.gone || report.stuck || report.stopped || report.timeUp);
  EXPECT_EQ(report.latencies.count(), report.reads);
}

TEST(ReadPass, KeepsAsManyReadsInFlightAsThereAreSlots) {
  ScriptedDisk disk;
  readAll(disk);
  EXPECT_EQ(disk.mostInFlight(), 4U);
}

struct FaultRow {
  const char* what;
  std::uint64_t first;
  std::uint64_t blocks;
  unsigned times;
  bool hard;
};

class PlacedFault : public testing::TestWithParam<FaultRow> {};

TEST_P(PlacedFault, IsFoundWithItsBlocks) {
  const FaultRow& row = GetParam();
  ScriptedDisk disk;
  disk.bad(row.first, row.blocks, row.times);
  const ReadReport report = readAll(disk);
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_EQ(report.faults[0].firstBlock, row.first);
  EXPECT_EQ(report.faults[0].blocks, row.blocks);
  EXPECT_EQ(report.faults[0].hard, row.hard);
  EXPECT_TRUE(report.faults[0].located);
  EXPECT_EQ(report.faults[0].error, ReadError::Medium);
  EXPECT_EQ(report.hardBlocks, row.hard ? row.blocks : 0U);
  EXPECT_EQ(report.softBlocks, row.hard ? 0U : row.blocks);
  EXPECT_EQ(report.triedBytes, disk.bytes());
}

// A block of a read of 128 fails once with that read and seven times with its halves before it is
// alone.
INSTANTIATE_TEST_SUITE_P(
    ReadPass, PlacedFault,
    testing::Values(FaultRow{"the first block of all", 0, 1, ScriptedDisk::kAlways, true},
                    FaultRow{"the last one", 65535, 1, ScriptedDisk::kAlways, true},
                    FaultRow{"one in the middle of a read", 1077, 1, ScriptedDisk::kAlways, true},
                    FaultRow{"several in a row", 1077, 8, ScriptedDisk::kAlways, true},
                    FaultRow{"a whole read", 1024, 128, ScriptedDisk::kAlways, true},
                    FaultRow{"one that comes back when it is read alone again", 1077, 1, 9, false},
                    FaultRow{"one that comes back at the last try", 1077, 1, 10, false},
                    FaultRow{"one that would have come back after it", 1077, 1, 11, true}));

TEST(ReadPass, BadBlocksOverSeveralReadsAreAllFound) {
  ScriptedDisk disk;
  disk.bad(1100, 300);
  const ReadReport report = readAll(disk);
  EXPECT_EQ(report.hardBlocks, 300U);
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_EQ(report.faults[0].firstBlock, 1100U);
  EXPECT_EQ(report.faults[0].blocks, 300U);
}

TEST(ReadPass, ABadBlockThatIsFoundTwiceCountsOnce) {
  ScriptedDisk disk(16);
  disk.bad(3);
  ScriptedSource source(disk, {4, 4096});
  RandomExtents extents({0, disk.bytes()}, 20, 4096, 1);
  FakeControl control;
  const ReadPass::Clock clock = [&disk] { return disk.now(); };
  const ReadReport report = ReadPass(source, extents, {}, clock, control).run();
  EXPECT_EQ(report.hardBlocks, 1U);
  EXPECT_EQ(report.faults.size(), 1U);
}

TEST(ReadPass, AReadThatComesBackInHalvesIsASoftFaultSomewhereInIt) {
  ScriptedDisk disk;
  disk.bad(1077, 1, 1);
  const ReadReport report = readAll(disk);
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_FALSE(report.faults[0].hard);
  EXPECT_FALSE(report.faults[0].located);
  EXPECT_EQ(report.faults[0].firstBlock, 1024U);
  EXPECT_EQ(report.faults[0].blocks, 128U);
}

TEST(ReadPass, AShortReadIsASoftFaultInTheRestOfIt) {
  ScriptedDisk disk;
  disk.cutOnce(1030);
  const ReadReport report = readAll(disk);
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_EQ(report.faults[0].error, ReadError::Short);
  EXPECT_EQ(report.faults[0].firstBlock, 1030U);
  EXPECT_EQ(report.faults[0].blocks, 122U);
  EXPECT_FALSE(report.faults[0].hard);
}

TEST(ReadPass, ADiskThatEndsBeforeItsSizeIsUnreadableThere) {
  ScriptedDisk disk(1024);
  ScriptedSource source(disk, {4, kRead});
  SequentialExtents::Sizes sizes;
  sizes.read = kRead;
  SequentialExtents extents({0, 1152 * 512}, 1152 * 512, sizes, 1);
  FakeControl control;
  const ReadPass::Clock clock = [&disk] { return disk.now(); };
  const ReadReport report = ReadPass(source, extents, {}, clock, control).run();
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_EQ(report.faults[0].firstBlock, 1024U);
  EXPECT_EQ(report.faults[0].error, ReadError::Short);
  EXPECT_TRUE(report.faults[0].hard);
}

TEST(ReadPass, AReadThatIsSlowAgainAndAgainIsNamed) {
  ScriptedDisk disk;
  disk.slow(1077, 0.6);
  const ReadReport report = readAll(disk);
  ASSERT_EQ(report.slow.size(), 1U);  // those that waited behind it are not
  EXPECT_EQ(report.slow[0].extent, (Extent{1024 * 512, kRead}));
  EXPECT_NEAR(report.slow[0].againSeconds, 0.6, 0.01);
}

TEST(ReadPass, ASlowPlaceIsFoundAmongManyReadsThatWereSlowerOnce) {
  ScriptedDisk disk;
  disk.slow(1077, 0.6);
  for (std::uint64_t read = 20; read < 120; ++read) disk.slow(read * kRead / 512, 2.0, 1);
  const ReadReport report = readAll(disk);
  ASSERT_EQ(report.slow.size(), 1U);
  EXPECT_EQ(report.slow[0].extent, (Extent{1024 * 512, kRead}));
}
TEST(ReadPass, OfADiskThatIsSlowAllOverSomePlacesAreNamed) {
  ScriptedDisk disk;
  for (std::uint64_t block = 0; block < 65536; block += kRead / 512) disk.slow(block, 0.6);
  const ReadReport report = readAll(disk);
  EXPECT_EQ(report.slow.size(), 8U);
}
TEST(ReadPass, AReadThatWasSlowOnceIsMeasuredAlone) {
  ScriptedDisk disk;
  disk.slow(1077, 0.6, 1);
  const ReadReport report = readAll(disk);
  EXPECT_TRUE(report.slow.empty());
  EXPECT_GE(report.latencies.most(), 0.6);
}

TEST(ReadPass, ADriveThatIsGoneEndsThePass) {
  for (const ReadError error : {ReadError::Gone, ReadError::Io}) {
    ScriptedDisk disk;
    disk.goneAfter(100, error);
    const ReadReport report = readAll(disk);
    ASSERT_TRUE(report.gone) << errorText(error);
    EXPECT_EQ(report.gone->offset, 100U * kRead);
    EXPECT_EQ(report.readBytes, 100U * kRead);
    EXPECT_TRUE(report.faults.empty());
    EXPECT_LT(disk.reads(), 120U);
  }
}

TEST(ReadPass, ADriveThatGoesWhileSectorsAreLookedForIsGone) {
  ScriptedDisk disk;
  disk.bad(0).goneAfter(20);
  EXPECT_TRUE(readAll(disk).gone);
}

TEST(ReadPass, AReadThatNeverComesBackEndsThePass) {
  ScriptedDisk disk;
  disk.stuckAt(1077);
  const ReadReport report = readAll(disk);
  ASSERT_TRUE(report.stuck);
  EXPECT_EQ(report.stuck->offset, 1024U * 512);
}

TEST(ReadPass, StopsSoonWhenAskedToEvenWithAReadThatDoesNotComeBack) {
  ScriptedDisk disk;
  disk.stuckAt(0);
  FakeControl control;
  control.stopAfter(20);
  const ReadReport report = readAll(disk, {}, control);
  EXPECT_TRUE(report.stopped);
  EXPECT_FALSE(report.stuck);
  EXPECT_LT(disk.now(), 10);
}

TEST(ReadPass, StopsInTheMiddleAndTellsHowFarItCame) {
  ScriptedDisk disk;
  FakeControl control;
  control.stopAfter(50);
  const ReadReport report = readAll(disk, {}, control);
  EXPECT_TRUE(report.stopped);
  EXPECT_GT(report.readBytes, 0U);
  EXPECT_LT(report.readBytes, disk.bytes());
}

/// Asks a run to stop as soon as something is the case.
class StopWhen : public RunControl {
 public:
  explicit StopWhen(std::function<bool()> when) : m_when(std::move(when)) {}
  void progress(double) override {}
  void status(const std::string&) override {}
  bool stopRequested() const override { return m_when(); }

 private:
  const std::function<bool()> m_when;
};

TEST(ReadPass, AStopAtAnyReadNeitherForgetsAFailedReadNorClaimsWhatWasNotRead) {
  for (std::uint64_t stopAt = 1; stopAt < 40; ++stopAt) {
    ScriptedDisk disk;
    disk.bad(1077);  // in the ninth read
    StopWhen control([&] { return disk.reads() >= stopAt; });
    const ReadReport report = readAll(disk, {}, control);
    EXPECT_TRUE(report.stopped);
    EXPECT_EQ(report.softBlocks, 0U) << "nothing has come back, stopped at read " << stopAt;
    EXPECT_LE(report.hardBlocks, 1U) << stopAt;
    const bool failed = disk.reads() >= 9;
    EXPECT_EQ(report.hardBlocks + report.unsettledBlocks > 0, failed) << stopAt;
  }
}

TEST(ReadPass, WhatFailedTogetherAndWasNotLookedIntoIsToldAsOne) {
  ScriptedDisk disk;
  disk.bad(1024, 256);
  StopWhen control([&] { return disk.reads() >= 10; });
  const ReadReport report = readAll(disk, {}, control);
  ASSERT_EQ(report.faults.size(), 1U);
  EXPECT_FALSE(report.faults[0].settled);
  EXPECT_EQ(report.faults[0].firstBlock, 1024U);
  EXPECT_EQ(report.faults[0].blocks, 256U);
}

TEST(ReadPass, AStopDoesNotWaitForAReadOfTheSearchThatNeverComesBack) {
  ScriptedDisk disk;
  disk.bad(1077).stuckAfter(15);
  StopWhen control([&] { return disk.now() > 1; });
  const ReadReport report = readAll(disk, {}, control);
  EXPECT_TRUE(report.stopped);
  EXPECT_FALSE(report.stuck);
  EXPECT_LT(disk.now(), 10);
  EXPECT_EQ(report.unsettledBlocks, 128U);
}

TEST(ReadPass, HardFaultsThatASearchFoundBeforeItStuckAreKept) {
  ScriptedDisk disk;
  disk.bad(1024).stuckAfter(24);  // the block is known by then
  const ReadReport report = readAll(disk);
  EXPECT_TRUE(report.stuck);
  EXPECT_EQ(report.hardBlocks, 1U);
  EXPECT_GT(report.seconds, 0);
}

TEST(ReadPass, AReadThatTheSystemRefusesIsNoFaultOfTheDriveAndEndsThePass) {
  for (const ReadError error : {ReadError::Refused, ReadError::Starved}) {
    ScriptedDisk disk;
    disk.bad(0, 65536, ScriptedDisk::kAlways, error);
    const ReadReport report = readAll(disk);
    EXPECT_EQ(report.problem, errorText(error));
    EXPECT_TRUE(report.faults.empty());
    EXPECT_FALSE(report.gone);
    EXPECT_LT(disk.reads(), 20U);
  }
}

TEST(ReadPass, ADiskThatBecomesSmallerIsNotGoneThoughWhatWasReadLastIs) {
  ScriptedDisk disk;
  disk.shrinksAfter(20, 30000);
  const ReadReport report = readAll(disk);
  EXPECT_FALSE(report.gone);
  EXPECT_GT(report.hardBlocks, 0U);
  for (const ReadFault& fault : report.faults)
    EXPECT_GT(fault.firstBlock + fault.blocks, 30000U) << "it still has these";
}

struct GotRow {
  const char* what;
  std::function<void(ScriptedDisk&)> script;
  std::uint64_t lost;  ///< bytes
};

TEST(ReadPass, TellsHowMuchCameAtOnceOrWhenItWasTriedAgain) {
  for (const GotRow& row :
       {GotRow{"a good disk", [](ScriptedDisk&) {}, 0},
        GotRow{"bad blocks", [](ScriptedDisk& disk) { disk.bad(1000, 3).bad(30000); }, 4 * 512},
        GotRow{"a block that came again", [](ScriptedDisk& disk) { disk.bad(1000, 1, 1); }, 0},
        GotRow{"a read that ended short", [](ScriptedDisk& disk) { disk.cutOnce(1000); }, 0},
        GotRow{"no memory once",
               [](ScriptedDisk& disk) { disk.bad(1077, 1, 1, ReadError::Starved); }, 0},
        GotRow{"all refused",
               [](ScriptedDisk& disk) {
                 disk.bad(0, 65536, ScriptedDisk::kAlways, ReadError::Refused);
               },
               65536 * 512}}) {
    ScriptedDisk disk;
    row.script(disk);
    EXPECT_EQ(readAll(disk).gotBytes, disk.bytes() - row.lost) << row.what;
  }
}

TEST(ReadPass, AReadForWhichTheSystemHadNoMemoryOnceIsReadAgainAndNoFault) {
  ScriptedDisk disk;
  disk.bad(1077, 1, 1, ReadError::Starved);
  const ReadReport report = readAll(disk);
  EXPECT_TRUE(report.faults.empty());
  EXPECT_EQ(report.problem, "");
  EXPECT_EQ(report.triedBytes, disk.bytes());
}

/// Takes nothing any more after some reads.
class ClosingSource : public ScriptedSource {
 public:
  using ScriptedSource::ScriptedSource;
  void collect(std::vector<ReadAnswer>& ended, double seconds) override {
    if (++m_collected > 10) throw NoFurtherReads("no way");
    ScriptedSource::collect(ended, seconds);
  }

 private:
  int m_collected = 0;
};

TEST(ReadPass, ASystemThatTakesNoFurtherReadsEndsThePassWithItsReason) {
  ScriptedDisk disk;
  ClosingSource source(disk, {4, 1U << 20});
  SequentialExtents extents({0, disk.bytes()}, disk.bytes(), {}, 1);
  FakeControl control;
  const ReadPass::Clock clock = [&disk] { return disk.now(); };
  const ReadReport report = ReadPass(source, extents, {}, clock, control).run();
  EXPECT_EQ(report.problem, "no way");
  EXPECT_EQ(report.reads, 10U);
}

TEST(ReadPass, BeginsNoReadWhenItsTimeIsUp) {
  ScriptedDisk disk;
  ReadPlan plan;
  plan.seconds = 0.01;
  const ReadReport report = readAll(disk, plan);
  EXPECT_TRUE(report.timeUp);
  EXPECT_LT(report.triedBytes, report.askedBytes);
}

TEST(ReadPass, TimeThatWasEnoughIsNotUp) {
  ScriptedDisk disk(512);
  ReadPlan plan;
  plan.seconds = 0.00035;  // over before the last of four reads has ended
  EXPECT_FALSE(readAll(disk, plan).timeUp);
}

TEST(ReadPass, TheFirstUnreadableBlockEndsItWhereItShould) {
  ScriptedDisk disk;
  disk.bad(1000).bad(30000);
  ReadPlan plan;
  plan.haltOnError = true;
  const ReadReport report = readAll(disk, plan);
  EXPECT_EQ(report.hardBlocks, 1U);
  EXPECT_LT(report.triedBytes, disk.bytes() / 2);
}

TEST(ReadPass, ADyingDriveIsNotSearchedForEver) {
  ScriptedDisk disk;
  disk.bad(2048, 60000);
  ReadPlan plan;
  plan.search.reads = 600;
  const ReadReport report = readAll(disk, plan);
  EXPECT_GE(report.hardBlocks, 60000U);
  EXPECT_LE(report.hardBlocks, 60000U + 2 * 128);  // what is not located counts as a whole
  EXPECT_LT(disk.reads(), 4000U);
  EXPECT_TRUE(std::any_of(report.faults.begin(), report.faults.end(),
                          [](const ReadFault& fault) { return !fault.located; }));
}

TEST(ReadPass, ProgressGoesUpToTheEnd) {
  ScriptedDisk disk;
  FakeControl control;
  readAll(disk, {}, control);
  EXPECT_TRUE(std::is_sorted(control.fractions().begin(), control.fractions().end()));
  EXPECT_EQ(control.fractions().back(), 1.0);
}

}  // namespace
}  // namespace providers::disk
