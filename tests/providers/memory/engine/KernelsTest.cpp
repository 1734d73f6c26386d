#include <gtest/gtest.h>

#include "providers/memory/engine/Kernels.h"
#include "tests/providers/memory/engine/TestWords.h"

namespace providers::memory {
namespace {

constexpr std::size_t kLines = 200;

struct KernelRow {
  const Kernels* kernels;
  std::string patternName;
  Pattern pattern;
  Pattern next;
};

std::vector<KernelRow> rows() {
  std::vector<KernelRow> list;
  for (const Kernels* kernels : availableKernels()) {
    list.push_back({kernels, "Walking", walkingPattern(5), walkingPattern(21)});
    list.push_back({kernels, "LowAddressBit", addressBitPattern(1), addressBitPattern(2)});
    list.push_back({kernels, "HighAddressBit", addressBitPattern(9), addressBitPattern(3)});
    list.push_back({kernels, "PowerOfTwo", powerOfTwoPattern(), powerOfTwoPattern().inverse()});
    list.push_back({kernels, "OwnAddress", ownAddressPattern(kernels), countingPattern()});
    list.push_back({kernels, "Counting", countingPattern(), countingPattern().inverse()});
    list.push_back({kernels, "Random", randomPattern(77), randomPattern(77).inverse()});
    list.push_back({kernels, "OtherRandom", randomPattern(1).inverse(), randomPattern(2)});
  }
  return list;
}

std::string nameOf(const ::testing::TestParamInfo<KernelRow>& row) {
  std::string name = row.param.kernels->name + row.param.patternName;
  name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
  return name;
}

/// All that the loops do is what the definition of the pattern says.
class EachKernel : public ::testing::TestWithParam<KernelRow> {
 protected:
  void fill(const Pattern& pattern) {
    for (std::size_t i = 0; i < words.count(); ++i) words[i] = pattern.at(i);
  }
  /// Whether the lines of the range hold one pattern, and all others another one.
  void expectOnly(LineRange range, const Pattern& inside, const Pattern& outside) {
    for (std::size_t i = 0; i < words.count(); ++i) {
      const std::size_t line = i / kLineWords;
      const bool in = line >= range.first && line < range.first + range.count;
      ASSERT_EQ(words[i], (in ? inside : outside).at(i)) << i;
    }
  }

  const KernelRow& row() const { return GetParam(); }
  const Kernels& kernels() const { return *GetParam().kernels; }
  TestWords words{kLines * kLineWords};
};

constexpr LineRange kRanges[] = {{0, kLines}, {0, 1}, {kLines - 1, 1}, {13, 100}, {64, 64}, {7, 0}};

TEST_P(EachKernel, WritesItsLinesAndNoOthers) {
  for (const LineRange range : kRanges) {
    fill(row().next);
    kernels().write(words.get(), range, row().pattern);
    kernels().drain();
    expectOnly(range, row().pattern, row().next);
  }
}

TEST_P(EachKernel, PassesWhatIsRight) {
  fill(row().pattern);
  for (const LineRange range : kRanges)
    for (const Direction direction : {Direction::Up, Direction::Down})
      EXPECT_EQ(kernels().check(words.get(), range, direction, row().pattern), range.count);
}

TEST_P(EachKernel, ReplacesWhatIsRight) {
  for (const auto replace : {kernels().checkAndWrite, kernels().checkAndStream}) {
    for (const LineRange range : kRanges) {
      for (const Direction direction : {Direction::Up, Direction::Down}) {
        for (const Pattern& next : {row().next, row().pattern.inverse()}) {
          fill(row().pattern);
          EXPECT_EQ(replace(words.get(), range, direction, row().pattern, next), range.count);
          kernels().drain();
          expectOnly(range, next, row().pattern);
        }
      }
    }
  }
}

TEST_P(EachKernel, StopsAtEachWordThatDiffersInAnyBit) {
  constexpr LineRange kRange{3, 90};
  for (std::size_t word = 0; word < 3 * kLineWords; ++word) {
    const unsigned bit = word % 2 ? 63 : static_cast<unsigned>(word);
    const std::size_t line = 40 + word / kLineWords;
    fill(row().pattern);
    words[40 * kLineWords + word] ^= std::uint64_t{1} << bit;
    EXPECT_EQ(kernels().check(words.get(), kRange, Direction::Up, row().pattern), line - 3);
    EXPECT_EQ(kernels().check(words.get(), kRange, Direction::Down, row().pattern), 92 - line);
  }
}

TEST_P(EachKernel, LeavesALineThatDiffersAsItIs) {
  for (const auto replace : {kernels().checkAndWrite, kernels().checkAndStream}) {
    fill(row().pattern);
    words[50 * kLineWords + 7] ^= std::uint64_t{1} << 63;
    const Pattern next = row().next;
    EXPECT_EQ(replace(words.get(), {10, 100}, Direction::Up, row().pattern, next), 40U);
    EXPECT_EQ(replace(words.get(), {51, 59}, Direction::Down, row().pattern, next), 59U);
    EXPECT_EQ(replace(words.get(), {50, 1}, Direction::Down, row().pattern, next), 0U);
    kernels().drain();
    words[50 * kLineWords + 7] ^= std::uint64_t{1} << 63;
    for (std::size_t i = 50 * kLineWords; i < 51 * kLineWords; ++i)
      EXPECT_EQ(words[i], row().pattern.at(i));
    EXPECT_EQ(words[49 * kLineWords], next.at(49 * kLineWords));
    EXPECT_EQ(words[51 * kLineWords], next.at(51 * kLineWords));
  }
}

TEST_P(EachKernel, KnowsWordsBeyondTheFourthThousandMillion) {
  // As if the words began long before.
  constexpr std::size_t kFirst = (std::size_t{1} << 33) - 100;
  auto* const begin = reinterpret_cast<std::uint64_t*>(
      reinterpret_cast<std::uintptr_t>(words.get()) - kFirst * kLineBytes);
  kernels().write(begin, {kFirst, kLines}, row().pattern);
  kernels().drain();
  for (std::size_t i = 0; i < words.count(); ++i)
    ASSERT_EQ(words[i], row().pattern.at(kFirst * kLineWords + i)) << i;
  EXPECT_EQ(kernels().check(begin, {kFirst, kLines}, Direction::Down, row().pattern), kLines);
}

INSTANTIATE_TEST_SUITE_P(All, EachKernel, ::testing::ValuesIn(rows()), nameOf);

TEST(Kernels, ThePlainOnesAreThereOnEachMachine) {
  ASSERT_FALSE(availableKernels().empty());
  EXPECT_EQ(availableKernels().front(), scalarKernels());
  EXPECT_EQ(&bestKernels(), availableKernels().back());
}

}  // namespace
}  // namespace providers::memory
