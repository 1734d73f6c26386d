#include <gtest/gtest.h>

#include "reports/common/IdSet.h"

namespace reports {
namespace {

TEST(IdSet, KnowsWhatItWasGivenInAnyOrder) {
  IdSet set;
  for (const std::uint64_t id : {3, 1, 7, 2}) set.add(id);
  for (const std::uint64_t id : {1, 2, 3, 7}) EXPECT_TRUE(set.has(id)) << id;
  for (const std::uint64_t id : {4, 5, 6, 8}) EXPECT_FALSE(set.has(id)) << id;
}

TEST(IdSet, TakesOneTwice) {
  IdSet set;
  for (const std::uint64_t id : {1, 1, 5, 5}) set.add(id);
  EXPECT_TRUE(set.has(1));
  EXPECT_TRUE(set.has(5));
  EXPECT_FALSE(set.has(2));
}

}  // namespace
}  // namespace reports
