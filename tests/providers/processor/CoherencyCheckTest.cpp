#include <gtest/gtest.h>

#include <atomic>

#include "providers/processor/CoherencyCheck.h"

namespace providers {
namespace {

class CoherencyCheckTest : public ::testing::Test {
 protected:
  CoherencyResult check(ResultTap& tap, std::uint64_t exchanges = 50) {
    return checkCoherency(
        3, 4, exchanges, [this](unsigned cpu) { return cpu != unusable; },
        [this] { return looks++ < limit; }, tap);
  }

  unsigned unusable = 99;
  std::atomic<int> looks{0};
  int limit = 1000000;
};

TEST_F(CoherencyCheckTest, EveryMessageArrives) {
  ResultTap tap;
  const CoherencyResult result = check(tap);
  EXPECT_TRUE(result.bound);
  EXPECT_FALSE(result.wrong);
  EXPECT_EQ(result.messages, 100U);
}

class LateFault : public ResultTap {
 public:
  std::uint64_t pass(std::uint64_t word) override { return m_words++ == 700 ? ~word : word; }

 private:
  std::atomic<int> m_words{0};
};

TEST_F(CoherencyCheckTest, AMessageThatArrivesWrongEndsTheExchange) {
  LateFault tap;
  const CoherencyResult result = check(tap);
  ASSERT_TRUE(result.wrong);
  EXPECT_EQ(result.wrong->expected, ~result.wrong->actual);
  EXPECT_LT(result.messages, 100U);
}

TEST_F(CoherencyCheckTest, AnEndOfTheTimeEndsTheExchange) {
  ResultTap tap;
  limit = 10;
  const CoherencyResult result = check(tap, 1000000);
  EXPECT_FALSE(result.wrong);
  EXPECT_LT(result.messages, 100U);
}

TEST_F(CoherencyCheckTest, ACpuThatCannotBeUsedIsTold) {
  ResultTap tap;
  for (const unsigned cpu : {3U, 4U}) {
    unusable = cpu;
    EXPECT_FALSE(check(tap).bound) << cpu;
  }
}

}  // namespace
}  // namespace providers
