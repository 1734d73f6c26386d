#include <gtest/gtest.h>

#include "integrations/slurm/Budget.h"

namespace slurm {
namespace {

class SlurmBudgets : public testing::TestWithParam<int> {};

TEST_P(SlurmBudgets, AreSharedOutInOrderAndWithinThemselves) {
  const Duration budget(GetParam());
  const Shares shares = sharesOf(budget);
  EXPECT_GT(shares.deadline, Duration(0));
  EXPECT_GT(shares.grace, Duration(0));
  EXPECT_LT(shares.deadline + shares.grace, shares.terminate);
  EXPECT_LT(shares.terminate, shares.kill);
  EXPECT_LT(shares.kill, shares.asked);
  EXPECT_LT(shares.asked, shares.drained);
  EXPECT_LT(shares.drained, budget);
}

TEST_P(SlurmBudgets, GiveTestsTheLargestPart) {
  const Duration budget(GetParam());
  EXPECT_GE(sharesOf(budget).deadline * 3, budget);
}

INSTANTIATE_TEST_SUITE_P(All, SlurmBudgets,
                         testing::Values(2'000, 3'001, 10'000, 50'000, 86'400'000));

TEST(ASlurmBudgetOfMinutes, LeavesLittleBesideTheTests) {
  EXPECT_EQ(sharesOf(Duration(600'000)).deadline, Duration(600'000 - 100 - 8'000 - 3 * 2'000));
}

}  // namespace
}  // namespace slurm
