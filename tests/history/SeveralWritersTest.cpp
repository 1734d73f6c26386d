#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

#include "tests/history/HistoryFixture.h"

namespace history {
namespace {

class SeveralWritersTest : public HistoryFixture {};

/// One writer among several: opens the history anew for each run.
void recordSome(const std::filesystem::path& folder, int writer, int runs, int& recorded) {
  for (int run = 0; run < runs; ++run) {
    History history = History::open(folder);
    recordRun(history, firstTime() + std::chrono::minutes(writer * runs + run));
    ++recorded;
  }
}

TEST_F(SeveralWritersTest, LoseNothingOfEachOther) {
  constexpr int kWriters = 4;
  constexpr int kRuns = 5;
  std::vector<int> recorded(kWriters);
  std::vector<std::thread> threads;
  for (int writer = 0; writer < kWriters; ++writer) {
    threads.emplace_back([&, writer] {
      recordSome(folder(), writer, kRuns, recorded[static_cast<std::size_t>(writer)]);
    });
  }
  for (std::thread& thread : threads) thread.join();
  const History history = open();
  const std::vector<RunRecord> runs = history.runs();
  EXPECT_EQ(runs.size(), static_cast<std::size_t>(kWriters * kRuns));
  for (const RunRecord& run : runs) {
    EXPECT_EQ(run.state, RunState::kEnded);
    EXPECT_EQ(linesOf(history, run.id).size(), 5U);
  }
}

TEST_F(SeveralWritersTest, RunsThatGoOnAtOnceAreKeptApart) {
  History one = open();
  History other = open();
  Recorder first(one);
  Recorder second(other);
  Tale firstTale(first);
  Tale secondTale(second);
  firstTale.runStarts("one").testStarts();
  secondTale.runStarts("other").testStarts();
  firstTale.testEnds().runEnds();
  secondTale.testEnds().runEnds();
  EXPECT_EQ(linesOf(one, first.id()).size(), 4U);
  EXPECT_EQ(linesOf(one, second.id()).size(), 4U);
  EXPECT_EQ(one.run(second.id()).host, "other");
}

}  // namespace
}  // namespace history
