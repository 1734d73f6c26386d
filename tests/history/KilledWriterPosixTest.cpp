#if !defined(_WIN32)

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/history/HistoryFixture.h"
#include "tests/history/PowerCut.h"

namespace history {
namespace {

class KilledWriterPosixTest : public HistoryFixture {
 protected:
  /// Records a run in a process of its own, which is killed at that operation on a file. True when
  /// it lived to the end.
  bool recordKilledAfter(std::uint64_t operations) const {
    const pid_t child = ::fork();
    if (child == 0) recordAndExit(operations);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) || WTERMSIG(status) == SIGKILL);
    return WIFEXITED(status);
  }

 private:
  [[noreturn]] void recordAndExit(std::uint64_t operations) const {
    Options options;
    options.layer = PowerCut::layer();
    PowerCut::instance().plan(operations);
    PowerCut::instance().instead([] { ::raise(SIGKILL); });
    {
      History history = History::open(folder(), options);
      recordRun(history, firstTime() + std::chrono::minutes(1));
    }
    ::_exit(0);
  }
};

TEST_F(KilledWriterPosixTest, LosesAtMostTheRunInProgress) {
  Options options;
  options.layer = PowerCut::layer();
  std::uint64_t operations = 0;
  std::size_t cutOff = 0;
  for (bool hasLived = false; !hasLived; ++operations) {
    hasLived = recordKilledAfter(operations);
    PowerCut::instance().plan(UINT64_MAX);
    History history = History::open(folder(), options);
    for (const RunRecord& run : history.runs()) {
      ASSERT_NE(run.state, RunState::kRunning) << "after " << operations << " operations";
      if (run.state == RunState::kCutOff) ++cutOff;
      linesOf(history, run.id);
      history.remove(run.id);
    }
  }
  EXPECT_GT(operations, 10U);
  EXPECT_GT(cutOff, 0U);
}

TEST_F(KilledWriterPosixTest, LeavesFinishedRunsOfOthersWhole) {
  History history = open();
  const std::string finished = recordRun(history);
  for (const std::uint64_t operations : {0, 3, 6, 9}) {
    ASSERT_FALSE(recordKilledAfter(operations));
    EXPECT_EQ(history.run(finished).state, RunState::kEnded);
    EXPECT_EQ(linesOf(history, finished).size(), 5U);
  }
}

}  // namespace
}  // namespace history

#endif
