#include <gtest/gtest.h>

#include "fleet/groups/Batches.h"
#include "fleet/groups/Chance.h"

namespace fleet {
namespace {

TEST(FleetChance, IsFishersExactTest) {
  // Of the tables with these margins, the ones at least as bad: worked out by hand.
  EXPECT_NEAR(chanceOf({3, 3}, {0, 3}), 1.0 / 20, 1e-9);
  EXPECT_NEAR(chanceOf({2, 2}, {0, 2}), 1.0 / 6, 1e-9);
  EXPECT_NEAR(chanceOf({3, 4}, {1, 4}), 17.0 / 70, 1e-9);
  EXPECT_NEAR(chanceOf({0, 5}, {2, 5}), 1, 1e-9);
}

TEST(FleetChance, AGroupStandsOutOnlyWhereItFailsClearlyMoreOften) {
  EXPECT_TRUE(standsOut({30, 100}, {10, 1000}, 10));
  EXPECT_FALSE(standsOut({2, 2}, {0, 1000}, 1)) << "two may be chance";
  EXPECT_FALSE(standsOut({1100, 10'000}, {900, 10'000}, 1)) << "not twice as often";
  EXPECT_FALSE(standsOut({3, 30}, {10, 300}, 10)) << "likely enough by chance";
  EXPECT_FALSE(standsOut({50, 100}, {0, 0}, 1)) << "there is nothing to hold it against";
}

std::vector<Numbered> things(int count, const std::string& bad, int failing) {
  std::vector<Numbered> result;
  for (int i = 0; i < count; ++i) {
    result.push_back({"OK" + std::to_string(1000 + i), false, static_cast<std::uint32_t>(i)});
  }
  for (int i = 0; i < 20; ++i) {
    result.push_back(
        {bad + std::to_string(1000 + i), i < failing, static_cast<std::uint32_t>(count + i)});
  }
  return result;
}

TEST(FleetBatches, TheBatchIsTheLongestBeginningThatTheBadOnesShare) {
  const std::vector<Batch> batches = batchesAmong(things(500, "BAD7X", 12));
  ASSERT_EQ(batches.size(), 1U);
  EXPECT_EQ(batches[0].prefix, "BAD7X10");
  EXPECT_EQ(batches[0].failing, 12U);
  EXPECT_EQ(batches[0].all, 20U);
  EXPECT_EQ(batches[0].restFailing, 0U);
  EXPECT_EQ(batches[0].rest, 500U);
  EXPECT_EQ(batches[0].members.size(), 12U);
}

TEST(FleetBatches, FailuresSpreadOverAllNumbersAreNoBatch) {
  std::vector<Numbered> all = things(500, "OK2", 0);
  for (std::size_t i = 0; i < all.size(); i += 25) all[i].isFailing = true;
  EXPECT_TRUE(batchesAmong(all).empty());
}

TEST(FleetBatches, OneBatchAmongNothingElseIsNone) {
  std::vector<Numbered> all = things(0, "BAD", 20);
  EXPECT_TRUE(batchesAmong(all).empty());
}

}  // namespace
}  // namespace fleet
