#include <gmock/gmock.h>

#include "history/store/Keeping.h"
#include "history/store/RunId.h"
#include "history/store/RunLocks.h"
#include "tests/history/HistoryFixture.h"

namespace history {
namespace {

TEST(RunIdTest, IsTheTimeInUtcWithFourDigits) {
  EXPECT_EQ(runId(firstTime(), 0x3f2a), "20261122-013000-3f2a");
  EXPECT_EQ(runId(firstTime(), 0), "20261122-013000-0000");
}

TEST(RunLocksTest, ALockIsSeenThroughAnotherHandleUntilItIsReleased) {
  const ScratchFolder scratch;
  RunLocks own(scratch.path() / "lock");
  const RunLocks other(scratch.path() / "lock");
  EXPECT_FALSE(other.isTaken(7));
  EXPECT_TRUE(own.take(7));
  EXPECT_TRUE(own.isTaken(7));
  EXPECT_TRUE(other.isTaken(7));
  EXPECT_FALSE(other.isTaken(8));
  own.release(7);
  EXPECT_FALSE(own.isTaken(7));
  EXPECT_FALSE(other.isTaken(7));
}

TEST(RunLocksTest, ALockGoesWithWhoeverHeldIt) {
  const ScratchFolder scratch;
  const RunLocks other(scratch.path() / "lock");
  {
    RunLocks own(scratch.path() / "lock");
    ASSERT_TRUE(own.take(1));
  }
  EXPECT_FALSE(other.isTaken(1));
}

TEST(RunLocksTest, OneLockIsForOneHolder) {
  const ScratchFolder scratch;
  RunLocks own(scratch.path() / "lock");
  RunLocks other(scratch.path() / "lock");
  EXPECT_TRUE(own.take(1));
  EXPECT_FALSE(other.take(1));
}

TEST(RunLocksTest, NumbersThatADamagedFileMayHaveAreTaken) {
  const ScratchFolder scratch;
  RunLocks locks(scratch.path() / "lock");
  EXPECT_FALSE(locks.isTaken(-1));
  EXPECT_FALSE(locks.take(-1));
  EXPECT_FALSE(locks.isTaken(INT64_MAX));
  locks.release(5);
}

struct KeepingRow {
  const char* name;
  engine::Body body;
  std::uint64_t test;
  std::uint64_t until;  ///< in eighths of the room
};

TEST(KeepingTest, WhatMattersMostIsKeptTheLongest) {
  const KeepingRow rows[] = {
      {"a step", engine::StepStarted{}, 1, 4},
      {"a progress", engine::Progress{}, 1, 4},
      {"a line of output", engine::OutputLine{}, 1, 4},
      {"a line of the log", engine::LogLine{}, 0, 4},
      {"a message", engine::Message{}, 1, 5},
      {"a measurement", engine::Measurement{}, 1, 5},
      {"a diagnosis", engine::Diagnosis{}, 1, 6},
      {"an error", engine::Error{}, 1, 6},
      {"a test's start", engine::TestStarted{}, 1, 7},
      {"a test's end", engine::Ended{}, 1, 8},
  };
  for (const KeepingRow& row : rows) {
    EXPECT_TRUE(isKept(row.body, row.test, row.until * 100 - 1, 800)) << row.name;
    EXPECT_FALSE(isKept(row.body, row.test, row.until * 100, 800)) << row.name;
  }
}

TEST(KeepingTest, TheRunsOwnStartAndEndAreAlwaysKept) {
  EXPECT_TRUE(isKept(engine::RunStarted{}, 0, 1'000'000, 800));
  EXPECT_TRUE(isKept(engine::Ended{}, 0, 1'000'000, 800));
}

}  // namespace
}  // namespace history
