#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "providers/disk/reading/Extents.h"
#include "providers/disk/reading/Latencies.h"
#include "tests/providers/disk/Sizes.h"

namespace providers::disk {
namespace {

std::vector<Extent> all(Extents& extents) {
  std::vector<Extent> list;
  while (const auto extent = extents.next()) list.push_back(*extent);
  return list;
}

std::uint64_t sum(const std::vector<Extent>& list) {
  std::uint64_t bytes = 0;
  for (const Extent& extent : list) bytes += extent.bytes;
  return bytes;
}

TEST(SequentialExtents, TheWholeRegionIsReadOnceUpToItsLastBlock) {
  SequentialExtents extents({512, 512 + 10 * kMebi + 1024}, 10 * kMebi + 1024, {}, 1);
  const auto list = all(extents);
  ASSERT_EQ(list.size(), 11U);
  std::uint64_t place = 512;
  for (const Extent& extent : list) {
    EXPECT_EQ(extent.offset, place);
    place += extent.bytes;
  }
  EXPECT_EQ(list.back().bytes, 1024U);
  EXPECT_EQ(extents.bytes(), sum(list));
}

TEST(SequentialExtents, AShareIsSpreadFromTheFirstBlockToTheLast) {
  const Region region{0, 10000 * kMebi + 512};
  SequentialExtents extents(region, 100 * kMebi, {}, 7);
  const auto list = all(extents);
  EXPECT_EQ(sum(list), 104 * kMebi);  // thirteen zones of eight
  EXPECT_EQ(extents.bytes(), sum(list));
  EXPECT_EQ(list.front().offset, 0U);
  EXPECT_EQ(list.back().offset + list.back().bytes, region.end);
  std::set<std::uint64_t> shares;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const std::uint64_t before = i == 0 ? 0 : list[i - 1].offset + list[i - 1].bytes;
    EXPECT_GE(list[i].offset, before);
    shares.insert(list[i].offset / (region.bytes() / 13 + 1));
  }
  EXPECT_EQ(shares.size(), 13U);
}

TEST(SequentialExtents, AnotherSeedReadsOtherPlaces) {
  const Region region{0, 10000 * kMebi};
  SequentialExtents first(region, 100 * kMebi, {}, 1), same(region, 100 * kMebi, {}, 1),
      other(region, 100 * kMebi, {}, 2);
  const auto list = all(first);
  EXPECT_EQ(all(same), list);
  EXPECT_NE(all(other), list);
}

TEST(SequentialExtents, NearlyAllIsAll) {
  SequentialExtents extents({0, 100 * kMebi}, 99 * kMebi, {}, 1);
  EXPECT_EQ(extents.bytes(), 100 * kMebi);
}

TEST(RandomExtents, StayInTheRegionAndReachAllOfIt) {
  const Region region{kMebi, 2 * kMebi + 512};
  RandomExtents extents(region, 5000, 4096, 3);
  std::set<std::uint64_t> places;
  for (const Extent& extent : all(extents)) {
    EXPECT_GE(extent.offset, region.begin);
    EXPECT_LE(extent.offset + extent.bytes, region.end);
    places.insert(extent.offset);
  }
  EXPECT_EQ(places.size(), 257U);
  EXPECT_EQ(extents.bytes(), 5000 / 257 * region.bytes() + 5000 % 257 * 4096);
}

TEST(RandomExtents, NoPlaceComesTwiceBeforeEachHasComeOnce) {
  for (const std::uint64_t count : {1U, 2U, 3U, 64U, 1000U}) {
    RandomExtents extents({kMebi, kMebi + count * 4096}, count, 4096, 3);
    std::set<std::uint64_t> places;
    for (const Extent& extent : all(extents)) places.insert(extent.offset);
    EXPECT_EQ(places.size(), count);
  }
}

TEST(RandomExtents, TheOrderIsNoneAndBelongsToTheSeed) {
  const auto order = [](std::uint64_t seed) {
    RandomExtents extents({0, 1000 * 4096}, 1000, 4096, seed);
    return all(extents);
  };
  const auto list = order(3);
  EXPECT_EQ(list, order(3));
  EXPECT_NE(list, order(4));
  int rises = 0;
  for (std::size_t i = 1; i < list.size(); ++i) rises += list[i - 1].offset < list[i].offset;
  EXPECT_GT(rises, 400);
  EXPECT_LT(rises, 600);
}

TEST(RandomExtents, ARegionWithoutRoomForOneIsReadAsAWhole) {
  RandomExtents extents({1024, 1536}, 1, 4096, 3);
  EXPECT_EQ(extents.bytes(), 512U);
  EXPECT_EQ(all(extents), (std::vector<Extent>{{1024, 512}}));
}

TEST(RandomExtents, ARegionWithoutBlocksHasNone) {
  RandomExtents extents({512, 512}, 10, 4096, 3);
  EXPECT_TRUE(all(extents).empty());
  EXPECT_EQ(extents.bytes(), 0U);
}

TEST(Latencies, PercentilesAreAtMostAThirtySecondTooHigh) {
  Latencies latencies;
  for (int i = 1; i <= 1000; ++i) latencies.add(i * 1e-5);
  for (const double share : {0.01, 0.5, 0.99, 0.999}) {
    EXPECT_GE(latencies.percentile(share), share * 1e-2 * 0.999);
    EXPECT_LE(latencies.percentile(share), share * 1e-2 * (1 + 1.0 / 16));
  }
  EXPECT_DOUBLE_EQ(latencies.percentile(1), 1e-2);
}

TEST(Latencies, ExtremesAndNothingAreNoTrouble) {
  EXPECT_EQ(Latencies().percentile(0.5), 0);
  Latencies latencies;
  for (const double seconds : {0.0, 1e-12, 1e9}) latencies.add(seconds);
  EXPECT_EQ(latencies.most(), 1e9);
  EXPECT_LE(latencies.percentile(0.3), 2e-7);
}

}  // namespace
}  // namespace providers::disk
