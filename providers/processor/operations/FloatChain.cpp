#include "providers/processor/operations/FloatChain.h"

namespace providers {

namespace {

/// The fractions of every x on the way, since a chain forgets small errors.
std::uint64_t softChain(const SoftArithmetic& soft, std::uint64_t first, SoftFloat y, SoftFloat z,
                        SoftFloat w) {
  SoftFloat x = soft.unit(first);
  std::uint64_t all = 0;
  const auto next = [&](SoftFloat value) {
    x = soft.unit(soft.fraction(value));
    all ^= soft.fraction(x);
  };
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    next(soft.add(soft.multiply(x, y), z));
    next(soft.divide(x, w));
    next(soft.add(soft.squareRoot(x), y));
    next(soft.difference(soft.add(x, w), z));
  }
  return all;
}

std::uint64_t softChain(const SoftArithmetic& soft, const std::uint64_t* operands, std::size_t lane,
                        std::size_t lanes, unsigned shift) {
  const auto number = [&](std::size_t which) {
    return soft.unit(operands[which * lanes + lane] >> shift);
  };
  return softChain(soft, operands[lane] >> shift, number(1), number(2), number(3));
}

}  // namespace

void shapeFloats64(std::uint64_t* words, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) words[i] = (words[i] & kFraction64) | kOne64;
}

void shapeFloats32(std::uint64_t* words, std::size_t count) {
  constexpr std::uint64_t kBoth = 0x0000000100000001;
  for (std::size_t i = 0; i < count; ++i)
    words[i] = (words[i] & kFraction32 * kBoth) | kOne32 * kBoth;
}

std::uint64_t chainAnswer64(const std::uint64_t* operands, std::size_t lane, std::size_t lanes) {
  return softChain(SoftArithmetic(53), operands, lane, lanes, 0);
}

std::uint64_t chainAnswer32(const std::uint64_t* operands, std::size_t lane, std::size_t lanes) {
  const SoftArithmetic soft(24);
  const std::uint64_t low = softChain(soft, operands, lane, lanes, 0);
  const std::uint64_t high = softChain(soft, operands, lane, lanes, 32);
  return high << 32 | low;
}

}  // namespace providers
