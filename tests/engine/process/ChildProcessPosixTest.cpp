#include <gtest/gtest.h>

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

}  // namespace
}  // namespace engine
