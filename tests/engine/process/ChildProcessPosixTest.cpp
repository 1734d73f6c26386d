#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <optional>
#include <string>

#include "engine/process/ChildProcess.h"

namespace engine {
namespace {

class Listener : public ChildListener {
 public:
  std::string output;
  std::optional<ProcessEnd> end;

  void onReply(std::string_view) override {}
  void onOutput(std::string_view bytes) override { output += bytes; }
  void onErrorOutput(std::string_view) override {}
  void onEnd(const ProcessEnd& what) override { end = what; }
};

/// Its write raises a signal that ends a process which does not expect it.
TEST(ChildProcessPosixTest, SendingToOneThatHasEndedHarmsNobody) {
  Loop loop;
  Listener listener;
  ChildProcess child(loop, {"/bin/true", {}, {}}, listener);
  loop.runUntil([&] { return listener.end.has_value(); });
  child.send("are you there?\n");
  EXPECT_EQ(listener.end->status, 0);
}

TEST(ChildProcessPosixTest, WhatItLeftBehindWithItsPipesIsNotWaitedForLong) {
  Loop loop;
  Listener listener;
  ChildProcess child(loop, {"/bin/sh", {"-c", "sleep 3 & echo gone"}, {}}, listener);
  const std::uint64_t start = uv_hrtime();
  loop.runUntil([&] { return listener.end.has_value(); });
  EXPECT_EQ(listener.output, "gone\n");
  EXPECT_LT((uv_hrtime() - start) / 1'000'000, 2000U);
}

/// How often a handler of the test's own was called, which nobody but these tests sets.
std::atomic<int> told{0};
void beTold(int) { ++told; }
void beInformed(int, siginfo_t* information, void*) { told += information != nullptr ? 1 : 0; }

struct sigaction present() {
  struct sigaction action = {};
  sigaction(SIGCHLD, nullptr, &action);
  return action;
}

class ChildSignal : public ::testing::Test {
 protected:
  ChildSignal() { told = 0; }
  ~ChildSignal() override { signal(SIGCHLD, SIG_DFL); }

  void runToTheEnd(const char* program) {
    Loop loop;
    Listener listener;
    ChildProcess child(loop, {program, {}, {}}, listener);
    loop.runUntil([&] { return listener.end.has_value(); });
  }
};

// Catches a host that no longer hears of its own children once it has had a run.
TEST_F(ChildSignal, GoesToWhoHadItBeforeToo) {
  signal(SIGCHLD, beTold);
  runToTheEnd("/bin/true");
  EXPECT_GE(told, 1);
  EXPECT_EQ(present().sa_handler, beTold) << "it is back in its place";
}

TEST_F(ChildSignal, GoesToAHandlerThatWantsToKnowMoreAsWell) {
  struct sigaction informed = {};
  informed.sa_sigaction = beInformed;
  informed.sa_flags = SA_SIGINFO;
  sigaction(SIGCHLD, &informed, nullptr);
  runToTheEnd("/bin/true");
  EXPECT_GE(told, 1);
  EXPECT_EQ(present().sa_sigaction, beInformed);
  EXPECT_NE(present().sa_flags & SA_SIGINFO, 0);
}

TEST_F(ChildSignal, IsIgnoredAgainWhereItWas) {
  signal(SIGCHLD, SIG_IGN);
  runToTheEnd("/bin/true");
  EXPECT_EQ(present().sa_handler, SIG_IGN);
}

TEST_F(ChildSignal, AHandlerThatIsSetMeanwhileIsPassedToFromTheNextChildOn) {
  Loop loop;
  Listener first, second;
  ChildProcess patient(loop, {"/bin/sleep", {"1"}, {}}, first);
  signal(SIGCHLD, beTold);
  {
    ChildProcess child(loop, {"/bin/true", {}, {}}, second);
    loop.runUntil([&] { return second.end.has_value(); });
  }
  EXPECT_GE(told, 1);
  loop.runUntil([&] { return first.end.has_value(); });
}

TEST_F(ChildSignal, OfAChildThatCannotBeStartedIsNobodysAffair) {
  signal(SIGCHLD, beTold);
  Loop loop;
  Listener listener;
  EXPECT_ANY_THROW(ChildProcess(loop, {"/no/such/program", {}, {}}, listener));
  EXPECT_EQ(present().sa_handler, beTold);
}

}  // namespace
}  // namespace engine
