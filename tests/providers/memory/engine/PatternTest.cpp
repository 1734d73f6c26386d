#include <gtest/gtest.h>

#include <set>

#include "providers/memory/engine/Pattern.h"

namespace providers::memory {
namespace {

TEST(Pattern, AWalkingBitIsTheNextOneInTheNextWord) {
  const Pattern pattern = walkingPattern(16);
  EXPECT_EQ(pattern.at(0), std::uint64_t{1} << 16);
  EXPECT_EQ(pattern.at(47), std::uint64_t{1} << 63);
  EXPECT_EQ(pattern.at(48), 1U);
  EXPECT_EQ(pattern.at(64), std::uint64_t{1} << 16);
}

TEST(Pattern, AnAddressBitFillsTheWordsThatHaveIt) {
  const Pattern pattern = addressBitPattern(33);
  constexpr std::uint64_t kAt = std::uint64_t{1} << 33;
  EXPECT_EQ(pattern.at(kAt), ~std::uint64_t{0});
  EXPECT_EQ(pattern.at(kAt + 5), ~std::uint64_t{0});
  EXPECT_EQ(pattern.at(kAt - 1), 0U);
  EXPECT_EQ(pattern.at(2 * kAt), 0U);
}

TEST(Pattern, WordsWhoseNumbersDifferByAPowerOfTwoDifferInManyBits) {
  const Pattern pattern = powerOfTwoPattern();
  for (unsigned bit = 0; bit < 40; ++bit) {
    const std::uint64_t difference = pattern.at(0) ^ pattern.at(std::uint64_t{1} << bit);
    EXPECT_GE(__builtin_popcountll(difference), 5) << bit;
  }
}

TEST(Pattern, NoTwoWordsOfThePowerOfTwoPatternAreTheSame) {
  const Pattern pattern = powerOfTwoPattern();
  for (const std::uint64_t index : {0x1ULL, 0x3ULL, 0xFFULL, 0x8000001ULL, 0xFFFFFFFFFULL})
    EXPECT_EQ(pattern.at(index) & 0xFFFFFFFFFFU, index) << "the lower bits tell the number";
}

TEST(Pattern, AnAddressIsItsOwn) {
  std::uint64_t words[9] = {};
  EXPECT_EQ(ownAddressPattern(words).at(8), reinterpret_cast<std::uintptr_t>(words + 8));
}

TEST(Pattern, TheInverseDiffersInEachBit) {
  for (const Pattern& pattern : {walkingPattern(3), addressBitPattern(7), powerOfTwoPattern(),
                                 countingPattern(), randomPattern(9)}) {
    for (const std::uint64_t index : {0, 1, 63, 64, 1000})
      EXPECT_EQ(pattern.at(index) ^ pattern.inverse().at(index), ~std::uint64_t{0});
    EXPECT_TRUE(pattern.inverse().inverse() == pattern);
    EXPECT_FALSE(pattern.inverse() == pattern);
  }
}

TEST(RandomPattern, HasEachBitInHalfOfTheWords) {
  const Pattern pattern = randomPattern(1);
  constexpr unsigned kWords = 40000;
  std::uint64_t ones[64] = {};
  for (unsigned i = 0; i < kWords; ++i)
    for (unsigned bit = 0; bit < 64; ++bit) ones[bit] += pattern.at(i) >> bit & 1;
  // Six standard deviations.
  for (unsigned bit = 0; bit < 64; ++bit)
    EXPECT_NEAR(static_cast<double>(ones[bit]), kWords / 2, 600) << bit;
}

TEST(RandomPattern, HasHalfOfTheBitsOfAWordInCommonWithTheNext) {
  const Pattern pattern = randomPattern(2);
  constexpr unsigned kWords = 4000;
  for (const std::uint64_t step : {1, 2, 8, 64, 512, 1 << 20}) {
    std::uint64_t differences = 0;
    for (std::uint64_t i = 0; i < kWords; ++i)
      differences +=
          static_cast<unsigned>(__builtin_popcountll(pattern.at(i) ^ pattern.at(i + step)));
    EXPECT_NEAR(static_cast<double>(differences) / kWords, 32, 0.4) << step;
  }
}

TEST(RandomPattern, BelongsToItsSeedAndRepeatsNothing) {
  std::set<std::uint64_t> seen;
  for (const std::uint64_t seed : {0, 1, 2})
    for (std::uint64_t i = 0; i < 1000; ++i) seen.insert(randomPattern(seed).at(i));
  EXPECT_EQ(seen.size(), 3000U);
  EXPECT_EQ(randomPattern(5).at(77), randomPattern(5).at(77));
}

}  // namespace
}  // namespace providers::memory
