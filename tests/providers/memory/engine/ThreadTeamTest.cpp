#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

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

// Catches a run that gives up a memory which fewer threads could test as well.
TEST(ThreadTeam, HasAsManyThreadsAsTheSystemStarts) {
  int started = 0;
  const ThreadTeam::Start twice = [&started](std::function<void()> life) {
    if (started++ == 2) throw std::system_error(EAGAIN, std::generic_category());
    return std::thread(std::move(life));
  };
  ThreadTeam team(
      5, [](unsigned) {}, twice);
  EXPECT_EQ(team.size(), 2U);
  std::atomic<unsigned> done{0};
  team.run([&](unsigned) { ++done; }, lookAway);
  EXPECT_EQ(done, 2U);
}

TEST(ThreadTeam, WithoutAnyThreadSaysWhyThereIsNoTeam) {
  const ThreadTeam::Start never = [](std::function<void()>) -> std::thread {
    throw std::system_error(EAGAIN, std::generic_category());
  };
  try {
    const ThreadTeam team(
        2, [](unsigned) {}, never);
    ADD_FAILURE() << "a team of nobody";
  } catch (const std::system_error& error) {
    EXPECT_EQ(std::string(error.what()).rfind("the system starts no thread for the test", 0), 0U);
  }
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
