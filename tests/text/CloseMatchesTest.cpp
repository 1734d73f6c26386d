#include <gtest/gtest.h>

#include "text/CloseMatches.h"

namespace text {
namespace {

using Texts = std::vector<std::string>;

struct DistanceRow {
  const char* left;
  const char* right;
  std::size_t limit;
  std::size_t distance;
};

TEST(EditDistance, CountsLettersUpToItsLimit) {
  const DistanceRow rows[] = {
      {"", "", 3, 0},
      {"memory", "memory", 3, 0},
      {"memory", "memry", 3, 1},
      {"memory", "nemory", 3, 1},
      {"", "abc", 3, 3},
      {"abc", "", 3, 3},
      {"kitten", "sitting", 9, 3},
      {"kitten", "sitting", 2, 3},
      {"a", "abcdefgh", 2, 3},
  };
  for (const DistanceRow& row : rows) {
    EXPECT_EQ(editDistance(row.left, row.right, row.limit), row.distance)
        << row.left << " / " << row.right;
  }
}

TEST(CloseMatches, TheNearestComesFirst) {
  const Texts candidates = {"Memory Tests", "Memory Test", "Disk Test"};
  EXPECT_EQ(closeMatches("Memry Test", candidates, 3), (Texts{"Memory Test", "Memory Tests"}));
}

TEST(CloseMatches, APartOfANameIsCloseWhateverItsCase) {
  EXPECT_EQ(closeMatches("MEMORY", {"Full Memory Walk", "Disk"}, 3), (Texts{"Full Memory Walk"}));
}

TEST(CloseMatches, NoMoreThanAskedForAreNamed) {
  EXPECT_EQ(closeMatches("test", {"test 1", "test 2", "test 3"}, 2), (Texts{"test 1", "test 2"}));
}

TEST(CloseMatches, NothingIsCloseToAnEmptyText) {
  EXPECT_TRUE(closeMatches("", {"a", "Memory"}, 3).empty());
}

}  // namespace
}  // namespace text
