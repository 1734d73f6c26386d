#include <gtest/gtest.h>

#include "providers/memory/engine/Sequence.h"
#include "tests/providers/memory/engine/TestWords.h"

namespace providers::memory {
namespace {

constexpr std::size_t kWords = 1000;  // no power of two

class EachSequence : public ::testing::TestWithParam<TestType> {
 protected:
  std::vector<Sweep> sweeps() const {
    return makeSequence(GetParam(), {words.get(), kWords, 42, 1.5});
  }
  TestWords words{kWords};
};

TEST_P(EachSequence, ChecksAllThatItWrites) {
  const std::vector<Sweep> all = sweeps();
  ASSERT_GE(all.size(), 3U);
  EXPECT_EQ(all.front().action, Sweep::Action::Write);
  EXPECT_EQ(all.back().action, Sweep::Action::Check);
  for (std::size_t i = 1; i < all.size(); ++i) {
    EXPECT_TRUE(all[i].expected == all[i - 1].next) << i;
    if (i + 1 < all.size()) {
      EXPECT_EQ(all[i].action, Sweep::Action::CheckAndWrite) << i;
    }
  }
}

TEST_P(EachSequence, ReplacesAPatternByOneOfItsKind) {
  for (const Sweep& sweep : sweeps()) {
    if (sweep.action != Sweep::Action::CheckAndWrite) continue;
    EXPECT_EQ(sweep.expected.kind, sweep.next.kind);
  }
}

TEST_P(EachSequence, LetsEachBitHoldBothValues) {
  for (std::size_t i = 0; i < kWords; ++i) {
    std::uint64_t ones = 0, zeros = 0;
    for (const Sweep& sweep : sweeps()) {
      if (sweep.action == Sweep::Action::Check) continue;
      ones |= sweep.next.at(i);
      zeros |= ~sweep.next.at(i);
    }
    ASSERT_EQ(ones & zeros, ~std::uint64_t{0}) << "word " << i;
  }
}

TEST_P(EachSequence, RestsOnlyWhereBitsAreToFade) {
  double rests = 0;
  for (const Sweep& sweep : sweeps()) rests += sweep.restSeconds;
  EXPECT_DOUBLE_EQ(rests, GetParam() == TestType::BitFade ? 3 : 0);
}

TEST_P(EachSequence, IsThereForNoWordsToo) {
  for (const std::size_t count : {0, 1, 8})
    EXPECT_GE(makeSequence(GetParam(), {words.get(), count, 42, 0}).size(), 3U) << count;
}

INSTANTIATE_TEST_SUITE_P(All, EachSequence, ::testing::ValuesIn(kAllTestTypes));

class AddressSequence : public EachSequence {};

TEST_P(AddressSequence, TellsAnyTwoWordsApart) {
  const std::vector<Sweep> all = sweeps();
  for (std::size_t a = 0; a < kWords; a += 7) {
    for (std::size_t b = a + 1; b < kWords; ++b) {
      bool differ = false;
      for (const Sweep& sweep : all) differ = differ || sweep.next.at(a) != sweep.next.at(b);
      ASSERT_TRUE(differ) << a << " and " << b;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, AddressSequence,
                         ::testing::Values(TestType::AddressBusWalkingOnes,
                                           TestType::PowerOfTwoAddressing,
                                           TestType::SelfAddressing));

}  // namespace
}  // namespace providers::memory
