#include <gtest/gtest.h>

#include "providers/memory/size/Headroom.h"

namespace providers::memory {
namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;
constexpr std::uint64_t kGibi = std::uint64_t{1} << 30;

TEST(Headroom, IsTheFixedPartAndAFiftieth) { EXPECT_EQ(headroom(50 * kGibi), 64 * kMebi + kGibi); }

// From a small guest to a large server: nine tenths of what is available are tested.
TEST(Headroom, LeavesNineTenthsToTheTest) {
  for (const std::uint64_t available :
       {std::uint64_t{10}, 300 * kMebi, kGibi, 24 * kGibi, 4096 * kGibi}) {
    EXPECT_LE(headroom(available), available / 10) << available;
    const MemorySize size{available, available, available};
    EXPECT_GE(testableBytes(size) + kMebi, available / 10 * 9) << available;
  }
}

struct AskedRow {
  const char* name;
  std::uint64_t wanted;
  unsigned percent;
  std::uint64_t asked;  ///< in MiB
};

TEST(AskedBytes, AreTheWantedOnesOrTheShare) {
  const MemorySize size{9999 * kMebi, 9999 * kMebi, 1000 * kMebi};  // 84 MiB are left to others
  for (const AskedRow& row :
       {AskedRow{"all", 0, 100, 916}, AskedRow{"half", 0, 50, 458},
        AskedRow{"a twentieth", 0, 5, 45}, AskedRow{"wanted", 64 * kMebi, 5, 64},
        AskedRow{"more than there is", 5000 * kMebi, 5, 5000},
        AskedRow{"no less than wanted", 5 * kMebi + 7, 100, 6},
        AskedRow{"more than there can be", ~std::uint64_t{0}, 100, ~std::uint64_t{0} / kMebi},
        AskedRow{"no less than one", 7, 100, 1}})
    EXPECT_EQ(askedBytes(size, row.wanted, row.percent), row.asked * kMebi) << row.name;
}

TEST(AskedBytes, OfAMachineThatTellsNothingAreTheLeast) {
  EXPECT_EQ(testableBytes({}), 0U);
  EXPECT_EQ(askedBytes({}, 0, 100), kMebi);
}

}  // namespace
}  // namespace providers::memory
