#include <gtest/gtest.h>

#include <random>

#include "providers/memory/size/MemoryTurn.h"
#include "tests/providers/FileTree.h"

namespace providers::memory {
namespace {

TEST(MemoryTurn, IsOnePersonsUntilItEnds) {
  const std::string name = "diagsrunner-test-" + std::to_string(std::random_device()());
  auto first = takeTurn(name);
  ASSERT_TRUE(first);
  EXPECT_FALSE(takeTurn(name));
  EXPECT_TRUE(takeTurn(name + "0")) << "another one's";
  first.reset();
  EXPECT_TRUE(takeTurn(name));
}

// Catches jobs that keep each other out though each has memory of its own.
TEST(MemoryTurn, OfAGroupWithALimitIsThatGroups) {
  const MemorySize whole{100, 100, 50}, limited{100, 20, 10};
  const auto nameIn = [](const MemorySize& size, const char* group) {
    FileTree tree;
    tree.add("proc/self/cgroup", std::string("0::") + group + "\n");
    return turnName(size, tree.root());
  };
  EXPECT_EQ(nameIn(whole, "/job1"), nameIn(whole, "/job2"));
  EXPECT_NE(nameIn(limited, "/job1"), nameIn(whole, "/job1"));
}

TEST(MemoryTurn, OfTwoGroupsHasTwoNames) {
  FileTree tree;
  const MemorySize limited{100, 20, 10};
  tree.add("proc/self/cgroup", "0::/job1\n");
  const std::string first = turnName(limited, tree.root());
  EXPECT_EQ(turnName(limited, tree.root()), first);
  tree.add("proc/self/cgroup", "0::/job2\n");
  EXPECT_NE(turnName(limited, tree.root()), first);
}

}  // namespace
}  // namespace providers::memory
