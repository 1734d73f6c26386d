#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

#include "providers/memory/engine/ThreadTeam.h"

namespace providers::memory {
namespace {

void lookAway() {}

TEST(ThreadTeam, DoesEachPieceOfWorkOnceOnEachThread) {
  std::atomic<unsigned> places{0};
  ThreadTeam team(5, [&](unsigned) { ++places; });
  std::atomic<unsigned> done[5] = {};
  for (unsigned piece = 1; piece <= 20; ++piece) {
    team.run([&](unsigned thread) { ++done[thread]; }, lookAway);
    for (const auto& count : done) ASSERT_EQ(count, piece);
  }
  EXPECT_EQ(places, 5U);
}

TEST(ThreadTeam, FindsItsPlaceBeforeItWorks) {
  std::atomic<bool> placed[3] = {};
  ThreadTeam team(3, [&](unsigned thread) { placed[thread] = true; });
  std::atomic<unsigned> early{0};
  team.run([&](unsigned thread) { early += placed[thread] ? 0 : 1; }, lookAway);
  EXPECT_EQ(early, 0U);
}

TEST(ThreadTeam, TellsWhatItsWorkThrew) {
  ThreadTeam team(2, [](unsigned) {});
  const auto failing = [](unsigned thread) {
    if (thread == 1) throw std::runtime_error("no");
  };
  EXPECT_THROW(team.run(failing, lookAway), std::runtime_error);
  std::atomic<unsigned> done{0};
  team.run([&](unsigned) { ++done; }, lookAway);
  EXPECT_EQ(done, 2U) << "and works on";
}

TEST(ThreadTeam, LooksUpWhileTheWorkGoesOn) {
  ThreadTeam team(1, [](unsigned) {});
  std::atomic<bool> looked{false};
  team.run(
      [&](unsigned) {
        while (!looked) std::this_thread::yield();
      },
      [&] { looked = true; });
  EXPECT_TRUE(looked);
}

// Catches a caller that is told of a failure while threads are still at what it gave them.
TEST(ThreadTeam, IsDoneWhenWhatLooksUpHasThrown) {
  ThreadTeam team(1, [](unsigned) {});
  std::atomic<bool> looked{false}, done{false};
  const auto work = [&](unsigned) {
    while (!looked) std::this_thread::yield();
    done = true;
  };
  const auto look = [&] {
    looked = true;
    throw std::runtime_error("no");
  };
  EXPECT_THROW(team.run(work, look), std::runtime_error);
  EXPECT_TRUE(done);
}

}  // namespace
}  // namespace providers::memory
