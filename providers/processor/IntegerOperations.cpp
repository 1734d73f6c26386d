#include "providers/common/SplitMix.h"
#include "providers/processor/Operations.h"

namespace providers {

namespace {

constexpr unsigned kBits = 64;
constexpr std::uint64_t kRuns = 4000;

/// The product by additions alone.
std::uint64_t multiplyByAdding(std::uint64_t left, std::uint64_t right) {
  std::uint64_t product = 0;
  for (unsigned bit = 0; bit < kBits; ++bit) {
    if (right >> bit & 1) product += left << bit;
  }
  return product;
}

/// The quotient by subtractions alone, bit by bit as on paper.
std::uint64_t divideBySubtracting(std::uint64_t dividend, std::uint64_t divisor) {
  std::uint64_t quotient = 0;
  std::uint64_t rest = 0;
  for (unsigned bit = kBits; bit-- > 0;) {
    const bool overflows = rest >> (kBits - 1) & 1;
    rest = rest << 1 | (dividend >> bit & 1);
    if (!overflows && rest < divisor) continue;
    rest -= divisor;
    quotient |= std::uint64_t{1} << bit;
  }
  return quotient;
}

/// The rotation by moving each bit on its own.
std::uint64_t rotateBitByBit(std::uint64_t value, unsigned places) {
  std::uint64_t result = 0;
  for (unsigned bit = 0; bit < kBits; ++bit)
    result |= (value >> bit & 1) << ((bit + places) % kBits);
  return result;
}

}  // namespace

std::optional<Mismatch> multiplyIntegers(std::uint64_t seed, ResultTap& tap) {
  for (std::uint64_t i = 0; i < kRuns; ++i) {
    const std::uint64_t left = splitMix(seed, 2 * i);
    const std::uint64_t right = splitMix(seed, 2 * i + 1);
    const auto wrong = compare(multiplyByAdding(left, right), tap.pass(left * right));
    if (wrong) return wrong;
  }
  return std::nullopt;
}

std::optional<Mismatch> divideIntegers(std::uint64_t seed, ResultTap& tap) {
  for (std::uint64_t i = 0; i < kRuns; ++i) {
    const std::uint64_t dividend = splitMix(seed, 2 * i);
    // Divisors of every length, so that quotients are of every length, too.
    const std::uint64_t divisor = splitMix(seed, 2 * i + 1) >> (i % kBits) | 1;
    const auto wrong =
        compare(divideBySubtracting(dividend, divisor), tap.pass(dividend / divisor));
    if (wrong) return wrong;
    const std::uint64_t whole = dividend / divisor * divisor + dividend % divisor;
    if (const auto wrongRest = compare(dividend, tap.pass(whole))) return wrongRest;
  }
  return std::nullopt;
}

std::optional<Mismatch> rotateBits(std::uint64_t seed, ResultTap& tap) {
  for (std::uint64_t i = 0; i < kRuns; ++i) {
    const std::uint64_t value = splitMix(seed, i);
    const auto places = static_cast<unsigned>(1 + i % (kBits - 1));
    const std::uint64_t rotated = value << places | value >> (kBits - places);
    const auto wrong = compare(rotateBitByBit(value, places), tap.pass(rotated));
    if (wrong) return wrong;
  }
  return std::nullopt;
}

}  // namespace providers
