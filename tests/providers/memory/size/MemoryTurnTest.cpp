#include <gtest/gtest.h>

#include <cstdlib>
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

void setVariable(const char* name, const std::string& value) {
#if defined(_WIN32)
  _putenv_s(name, value.c_str());
#else
  setenv(name, value.c_str(), 1);
#endif
}

// Catches a turn that only its own process knows of. Where a process cannot be split, the second
// one comes here by the same way, and finds the name that the first one has the turn of.
TEST(MemoryTurn, IsKeptFromOtherProcesses) {
  const char* const kVariable = "DIAGS_TEST_TURN";
  const char* const given = std::getenv(kVariable);
  std::unique_ptr<MemoryTurn> turn;
  const bool isSecond = given && *given;
  const std::string name =
      isSecond ? given : "diagsrunner-test-" + std::to_string(std::random_device()());
  if (!isSecond) {
    turn = takeTurn(name);
    ASSERT_TRUE(turn);
    setVariable(kVariable, name);
  }
  EXPECT_EXIT(std::exit(takeTurn(name) ? 1 : 7), testing::ExitedWithCode(7), "");
  turn.reset();
  EXPECT_EXIT(std::exit(takeTurn(name) ? 7 : 1), testing::ExitedWithCode(7), "");
  setVariable(kVariable, {});
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
