#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "providers/memory/size/MemoryBuffer.h"

namespace providers::memory {
namespace {

/// How much of this process the system keeps in place. Only Linux tells.
std::size_t lockedBytes() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    std::size_t kilobytes = 0;
    if (word == "VmLck:" && status >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

TEST(MemoryBuffer, SaysWhetherItIsKeptInPlace) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers keep nothing in place and say that they did";
#endif
  constexpr std::size_t kPlenty = std::size_t{1024} * 1024;
  const std::size_t before = lockedBytes();
  const MemoryBuffer buffer(kPlenty);
  EXPECT_EQ(lockedBytes() - before, buffer.whyNotLocked().empty() ? kPlenty : 0);
}

}  // namespace
}  // namespace providers::memory
