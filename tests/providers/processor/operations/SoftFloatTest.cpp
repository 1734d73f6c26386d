#include <gtest/gtest.h>
#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include <cmath>

#include "providers/common/SplitMix.h"
#include "providers/processor/operations/SoftFloat.h"

namespace providers {
namespace {

constexpr SoftArithmetic kSoft(53);

double asDouble(SoftFloat value) {
  return std::ldexp(static_cast<double>(value.mantissa), value.exponent);
}

#if defined(__x86_64__)
__attribute__((target("fma"))) double multiplyAddByInstruction(double a, double b, double c) {
  return _mm_cvtsd_f64(_mm_fmadd_sd(_mm_set_sd(a), _mm_set_sd(b), _mm_set_sd(c)));
}

/// The machine's own: the function of some C libraries rounds twice.
double multiplyAdd(double a, double b, double c) {
  return __builtin_cpu_supports("fma") ? multiplyAddByInstruction(a, b, c) : std::fma(a, b, c);
}
#else
double multiplyAdd(double a, double b, double c) { return std::fma(a, b, c); }
#endif

class SoftFloatTest : public ::testing::Test {
 protected:
  /// Calls the function with many pairs of numbers, as integers make them and as the machine has
  /// them.
  template <class Function>
  void eachPair(Function function) {
    for (std::uint64_t i = 0; i < 500; ++i) {
      const SoftFloat x = kSoft.unit(splitMix(1, i)), y = kSoft.unit(splitMix(2, i) >> (i % 50));
      function(x, y, asDouble(x), asDouble(y));
    }
  }
};

TEST_F(SoftFloatTest, RoundsAsTheMachineDoes) {
  eachPair([](SoftFloat x, SoftFloat y, double a, double b) {
    EXPECT_EQ(asDouble(kSoft.add(x, y)), a + b);
    EXPECT_EQ(asDouble(kSoft.multiply(x, y)), a * b);
    EXPECT_EQ(asDouble(kSoft.divide(x, y)), a / b);
    EXPECT_EQ(asDouble(kSoft.difference(x, y)), std::fabs(a - b));
    EXPECT_EQ(asDouble(kSoft.squareRoot(x)), std::sqrt(a));
    EXPECT_EQ(asDouble(kSoft.multiplyAdd(x, y, x)), multiplyAdd(a, b, a));
    EXPECT_EQ(asDouble(kSoft.multiplySubtract(x, y, x)), std::fabs(multiplyAdd(a, b, -a)));
  });
}

TEST_F(SoftFloatTest, TakesTheRootOfBothKindsOfExponents) {
  for (const int exponent : {-52, -51, -3, 2}) {
    const SoftFloat value{std::uint64_t{3} << 51, exponent};
    EXPECT_EQ(asDouble(kSoft.squareRoot(value)), std::sqrt(asDouble(value))) << exponent;
  }
}

TEST_F(SoftFloatTest, RoundsATieToTheEvenNumber) {
  const SoftArithmetic four(4);
  struct Row {
    std::uint64_t value;
    std::uint64_t mantissa;
    int exponent;
  };
  for (const Row& row : {Row{0, 0, 0}, Row{1, 8, -3}, Row{15, 15, 0}, Row{17, 8, 1}, Row{19, 10, 1},
                         Row{31, 8, 2}, Row{34, 8, 2}, Row{35, 9, 2}, Row{38, 10, 2}}) {
    const SoftFloat rounded = four.fromInteger(row.value);
    EXPECT_EQ(rounded.mantissa, row.mantissa) << row.value;
    EXPECT_EQ(rounded.exponent, row.exponent) << row.value;
  }
}

TEST_F(SoftFloatTest, AUnitIsBetweenOneAndTwoAndKeepsItsFraction) {
  const SoftFloat unit = kSoft.unit(0xFFF0000000000123);
  EXPECT_GE(asDouble(unit), 1.0);
  EXPECT_LT(asDouble(unit), 2.0);
  EXPECT_EQ(kSoft.fraction(unit), 0x123U);
  EXPECT_EQ(kSoft.fraction(kSoft.unit(~std::uint64_t{0})), 0x000FFFFFFFFFFFFFU);
}

}  // namespace
}  // namespace providers
