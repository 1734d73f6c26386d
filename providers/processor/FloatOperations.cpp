#include <cmath>
#include <cstring>

#include "providers/common/SplitMix.h"
#include "providers/processor/Operations.h"

namespace providers {

namespace {

constexpr std::uint64_t kRuns = 10000;

std::uint64_t bitsOf(double value) {
  std::uint64_t bits = 0;
  static_assert(sizeof bits == sizeof value, "a double has 64 bits");
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

/// A whole number that a double holds exactly, as its product with another one does.
std::uint64_t halfLong(std::uint64_t seed, std::uint64_t index) {
  constexpr unsigned kHalfOfMantissa = 26;
  return (splitMix(seed, index) >> (64 - kHalfOfMantissa)) | 1;
}

/// The rounding error of a product, which is a double itself, by cutting both factors into halves
/// whose products are exact (Dekker, 1971).
double productError(double left, double right, double product) {
  constexpr double kSplitter = 134217729;  // 2^27 + 1
  const auto high = [](double value) {
    const double scaled = kSplitter * value;
    return scaled - (scaled - value);
  };
  const double leftHigh = high(left), leftLow = left - leftHigh;
  const double rightHigh = high(right), rightLow = right - rightHigh;
  return ((leftHigh * rightHigh - product) + leftHigh * rightLow + leftLow * rightHigh) +
         leftLow * rightLow;
}

}  // namespace

std::optional<Mismatch> calculateExactly(std::uint64_t seed, ResultTap& tap) {
  for (std::uint64_t i = 0; i < kRuns; ++i) {
    const std::uint64_t a = halfLong(seed, 2 * i), b = halfLong(seed, 2 * i + 1);
    const auto x = static_cast<double>(a), y = static_cast<double>(b);
    const auto product = static_cast<double>(a * b);
    if (const auto wrong = compare(bitsOf(product), tap.pass(bitsOf(x * y)))) return wrong;
    if (const auto wrong = compare(bitsOf(y), tap.pass(bitsOf(product / x)))) return wrong;
    const auto sum = static_cast<double>(a + b);
    if (const auto wrong = compare(bitsOf(sum), tap.pass(bitsOf(x + y)))) return wrong;
    const double root = std::sqrt(static_cast<double>(a * a));
    if (const auto wrong = compare(bitsOf(x), tap.pass(bitsOf(root)))) return wrong;
  }
  return std::nullopt;
}

std::optional<Mismatch> roundProducts(std::uint64_t seed, ResultTap& tap) {
  constexpr unsigned kDropped = 24;  // factors of 40 bits: the product has more than a double holds
  for (std::uint64_t i = 0; i < kRuns; ++i) {
    const std::uint64_t a = splitMix(seed, 2 * i) >> kDropped;
    const std::uint64_t b = splitMix(seed, 2 * i + 1) >> kDropped;
    const auto x = static_cast<double>(a), y = static_cast<double>(b);
    const double product = x * y;
    // All but the last 64 bits are the same on both sides, so those suffice to compare.
    int exponent = 0;
    const double mantissa = std::frexp(product, &exponent);
    const int shift = exponent - 53;
    const auto digits = static_cast<std::uint64_t>(std::ldexp(mantissa, 53));
    const std::uint64_t rounded = shift >= 0 ? digits << shift : digits >> -shift;
    const auto error = static_cast<std::int64_t>(productError(x, y, product));
    const auto wrong = compare(a * b, tap.pass(rounded + static_cast<std::uint64_t>(error)));
    if (wrong) return wrong;
  }
  return std::nullopt;
}

std::optional<Mismatch> iterateFloats(std::uint64_t, ResultTap& tap) {
  // Each step of the logistic map doubles an error, so the last digits of all steps count. Only
  // operations that IEEE 754 rounds in one way occur: the result has the same bits everywhere.
  constexpr std::uint64_t kExpected = 0x3FE05D7F10263936;
  constexpr unsigned kSteps = 100000;
  double value = 0.3125;
  for (unsigned step = 0; step < kSteps; ++step) value = 3.9375 * value * (1 - value);
  return compare(kExpected, tap.pass(bitsOf(value)));
}

}  // namespace providers
