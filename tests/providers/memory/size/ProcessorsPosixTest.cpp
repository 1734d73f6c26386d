#include <gtest/gtest.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <thread>

#include "providers/memory/size/Processors.h"

namespace providers::memory {
namespace {

// Of the kernel's interface, whose own library is not needed for these.
constexpr int kPreferred = 1, kInterleaved = 3, kLocal = 4;

int policy() {
  int mode = 0;
  return syscall(SYS_get_mempolicy, &mode, nullptr, 0UL, nullptr, 0UL) == 0 ? mode : -1;
}

// Catches threads that wander, and memory that comes from whatever node the process was told to
// take it from.
TEST(ProcessorsPosix, AThreadStaysWhereItIsToldToAndTakesMemoryOfItsOwnNode) {
  for (const Processor wanted : usableProcessors()) {
    std::thread([wanted] {
      const unsigned long firstNode = 1;
      const bool hasPolicies =
          syscall(SYS_set_mempolicy, kInterleaved, &firstNode, 8 * sizeof firstNode) == 0 &&
          policy() == kInterleaved;
      takePlace(wanted);
      EXPECT_EQ(sched_getcpu(), static_cast<int>(wanted));
      cpu_set_t allowed;
      ASSERT_EQ(sched_getaffinity(0, sizeof allowed, &allowed), 0);
      EXPECT_EQ(CPU_COUNT(&allowed), 1);
      if (!hasPolicies) return;  // a machine without nodes, or a sandbox
      const int after = policy();
      EXPECT_TRUE(after == kLocal || after == kPreferred) << after;
    }).join();
  }
}

}  // namespace
}  // namespace providers::memory
