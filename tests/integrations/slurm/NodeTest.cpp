#include <gtest/gtest.h>

#include "integrations/slurm/Node.h"

namespace slurm {
namespace {

std::string lineWith(const std::string& state, const std::string& reason) {
  return "NodeName=n2 Arch=x86_64 OS=Linux 6.1 #1 SMP State=" + state +
         " ThreadsPerCore=1 Partitions=all " + reason;
}

struct StateRow {
  const char* name;
  const char* state;
  bool isDrained;
};

class SlurmNodeStates : public testing::TestWithParam<StateRow> {};

TEST_P(SlurmNodeStates, AreRead) {
  const auto state = nodeStateFrom(lineWith(GetParam().state, ""), "n2");
  ASSERT_TRUE(state);
  EXPECT_EQ(state->isDrained, GetParam().isDrained);
}

const StateRow kStateRows[] = {
    {"Idle", "IDLE", false},           {"Mixed", "MIXED+COMPLETING", false},
    {"Down", "DOWN*", false},          {"Drained", "IDLE+DRAIN", true},
    {"Draining", "MIXED+DRAIN", true}, {"DrainedAndSilent", "IDLE+DRAIN*", true},
    {"Old", "DRAINED", true},          {"AndMore", "DOWN+DRAIN+NOT_RESPONDING", true},
};
INSTANTIATE_TEST_SUITE_P(All, SlurmNodeStates, testing::ValuesIn(kStateRows),
                         [](const auto& row) { return row.param.name; });

TEST(ASlurmNodesReason, IsReadWithoutWhoSaidIt) {
  const auto state = nodeStateFrom(
      lineWith("IDLE+DRAIN", "Reason=DIMM [A2]: 3 errors [root@2026-11-22T19:39:53]"), "n2");
  ASSERT_TRUE(state);
  EXPECT_EQ(state->reason, "DIMM [A2]: 3 errors");
}

TEST(ASlurmNodesReason, OfSomebodyStaysInFront) {
  EXPECT_EQ(reasonBeside({false, "Not responding"}, "sda: broken"), "Not responding; sda: broken");
  EXPECT_EQ(reasonBeside({false, ""}, "sda: broken"), "sda: broken");
  EXPECT_EQ(reasonBeside({false, "sda: broken"}, "sda: broken"), "sda: broken");
}

TEST(AnAnswerOfScontrol, OfAnotherNodeIsNone) {
  EXPECT_FALSE(nodeStateFrom("NodeName=n22 Arch=x86_64 State=IDLE ", "n2"));
  EXPECT_FALSE(nodeStateFrom("", "n2"));
  EXPECT_FALSE(nodeStateFrom("NodeName=n2 Arch=x86_64", "n2"));
}

}  // namespace
}  // namespace slurm
