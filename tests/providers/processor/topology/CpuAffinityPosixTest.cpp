#include <gtest/gtest.h>
#include <sched.h>

#include <csignal>
#include <thread>

#include "providers/processor/topology/CpuAffinity.h"

namespace providers {
namespace {

TEST(CpuAffinityPosix, ABoundThreadIsOnThatCpu) {
  const int cpu = sched_getcpu();
  int found = -1;
  std::thread([&] {
    if (bindToCpu(static_cast<unsigned>(cpu))) found = sched_getcpu();
  }).join();
  EXPECT_EQ(found, cpu);
}

TEST(CpuAffinityPosix, ABoundThreadHasAStackForTheHandlingOfSignals) {
  stack_t stack = {};
  stack.ss_flags = SS_DISABLE;
  std::thread([&] {
    bindToCpu(0);
    sigaltstack(nullptr, &stack);
  }).join();
  EXPECT_EQ(stack.ss_flags, 0);
  EXPECT_GE(stack.ss_size, 32U * 1024) << "a sanitizer brings one of its own";
}

}  // namespace
}  // namespace providers
