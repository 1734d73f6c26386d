#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "providers/processor/Operations.h"

namespace providers {
namespace {

/// Flips a bit of one of the results, the `victim`-th of them.
class FlippingTap : public ResultTap {
 public:
  FlippingTap(std::uint64_t victim, unsigned bit) : m_victim(victim), m_bit(bit) {}
  std::uint64_t pass(std::uint64_t result) override {
    return m_seen++ == m_victim ? result ^ std::uint64_t{1} << m_bit : result;
  }
  std::uint64_t seen() const { return m_seen; }

 private:
  const std::uint64_t m_victim;
  const unsigned m_bit;
  std::uint64_t m_seen = 0;
};

constexpr std::uint64_t kNone = ~std::uint64_t{0};

class EachOperation : public ::testing::TestWithParam<Operation> {};

TEST_P(EachOperation, FindsNothingWrongWithThisProcessor) {
  ResultTap tap;
  for (std::uint64_t seed : {std::uint64_t{0}, std::uint64_t{1}, kNone}) {
    const auto wrong = GetParam().run(seed, tap);
    EXPECT_FALSE(wrong) << "seed " << seed << std::hex << " " << wrong->expected << " "
                        << wrong->actual;
  }
}

TEST_P(EachOperation, FindsAWrongBitInTheFirstResult) {
  for (unsigned bit = 0; bit < 64; ++bit) {
    FlippingTap tap(0, bit);
    const auto wrong = GetParam().run(7, tap);
    ASSERT_TRUE(wrong) << "bit " << bit;
    EXPECT_NE(wrong->expected, wrong->actual);
  }
}

TEST_P(EachOperation, FindsAWrongBitInTheLastResult) {
  FlippingTap counting(kNone, 0);
  GetParam().run(7, counting);
  ASSERT_GT(counting.seen(), 0U);
  FlippingTap tap(counting.seen() - 1, 5);
  EXPECT_TRUE(GetParam().run(7, tap));
}

INSTANTIATE_TEST_SUITE_P(OfThisProcessor, EachOperation, ::testing::ValuesIn(processorOperations()),
                         [](const auto& row) {
                           std::string name;
                           for (const char letter : std::string(row.param.name)) {
                             if (std::isalnum(static_cast<unsigned char>(letter))) name += letter;
                           }
                           return name;
                         });

}  // namespace
}  // namespace providers
