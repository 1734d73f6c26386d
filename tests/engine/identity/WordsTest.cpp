#include <gtest/gtest.h>

#include "engine/identity/Words.h"

namespace engine {
namespace {

TEST(IdentityWords, DisksHaveTheSizesAtWhichTheyAreSold) {
  EXPECT_EQ(diskSize(0), "");
  EXPECT_EQ(diskSize(512), "1 MB");
  EXPECT_EQ(diskSize(480'103'981'056), "480 GB");
  EXPECT_EQ(diskSize(1'920'383'410'176), "1.9 TB");
  EXPECT_EQ(diskSize(8'001'563'222'016), "8 TB");
  EXPECT_EQ(diskSize(UINT64_MAX), "18446744 TB");
}

TEST(IdentityWords, MemoryIsCountedInItsLargestWholeUnit) {
  EXPECT_EQ(memorySize(0), "");
  EXPECT_EQ(memorySize(1024), "1 KiB");
  EXPECT_EQ(memorySize(1024ULL * 1024 * 1024 * 1024), "1 TiB");
}

}  // namespace
}  // namespace engine
