#include "providers/memory/engine/Pattern.h"

#include "providers/common/SplitMix.h"

namespace providers::memory {

namespace {

constexpr unsigned kBits = 64;
constexpr std::uint64_t kAll = ~std::uint64_t{0};

std::uint64_t addressBits(const Pattern& pattern, std::uint64_t index) {
  std::uint64_t value = 0;
  for (unsigned bit = 0; index >> bit; ++bit) {
    if (index >> bit & 1) value ^= pattern.table[bit];
    if (bit == kBits - 1) break;
  }
  return value;
}

/// A count, stirred three times: the product of its lower half and a constant, its halves swapped,
/// XOR the upper half. All of this vector units do, from the oldest on, and nothing gets lost: two
/// counts never give one number.
std::uint64_t randomWord(std::uint64_t seed, std::uint64_t index) {
  constexpr unsigned kHalf = 32;
  std::uint64_t value = seed + index * kRandomStep;
  for (int round = 0; round < 3; ++round) {
    const std::uint64_t product = (value & 0xFFFFFFFFU) * kRandomFactor;
    value = (product << kHalf | product >> kHalf) ^ value >> kHalf;
  }
  return value;
}

}  // namespace

std::uint64_t Pattern::at(std::uint64_t index) const {
  switch (kind) {
    case Kind::AddressBits:
      return invert ^ addressBits(*this, index);
    case Kind::Counting:
      return invert ^ (start + index * step);
    case Kind::Random:
      return invert ^ randomWord(start, index);
    case Kind::Table:
      break;
  }
  return invert ^ table[index % table.size()];
}

Pattern Pattern::inverse() const {
  Pattern other = *this;
  other.invert = ~invert;
  return other;
}

bool Pattern::operator==(const Pattern& other) const {
  return kind == other.kind && invert == other.invert && start == other.start &&
         step == other.step && table == other.table;
}

Pattern constantPattern(std::uint64_t value) {
  Pattern pattern;
  pattern.table.fill(value);
  return pattern;
}

Pattern walkingPattern(unsigned shift) {
  Pattern pattern;
  for (unsigned i = 0; i < kBits; ++i) pattern.table[i] = std::uint64_t{1} << (i + shift) % kBits;
  return pattern;
}

Pattern addressBitPattern(unsigned bit) {
  Pattern pattern;
  pattern.kind = Pattern::Kind::AddressBits;
  pattern.table[bit] = kAll;
  return pattern;
}

Pattern powerOfTwoPattern() {
  Pattern pattern;
  pattern.kind = Pattern::Kind::AddressBits;
  // The bit itself keeps the numbers independent: their upper bits are chance, the lower ones not.
  constexpr unsigned kOwnBits = 40;
  for (unsigned bit = 0; bit < kBits; ++bit) {
    const std::uint64_t own = bit < kOwnBits ? std::uint64_t{1} << bit : 0;
    pattern.table[bit] = splitMix(0, bit) << kOwnBits | own;
  }
  return pattern;
}

Pattern ownAddressPattern(const void* words) {
  Pattern pattern;
  pattern.kind = Pattern::Kind::Counting;
  pattern.start = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(words));
  pattern.step = sizeof(std::uint64_t);
  return pattern;
}

Pattern countingPattern() {
  Pattern pattern;
  pattern.kind = Pattern::Kind::Counting;
  pattern.step = 0x0101010101010101U;
  return pattern;
}

Pattern randomPattern(std::uint64_t seed) {
  Pattern pattern;
  pattern.kind = Pattern::Kind::Random;
  // Seeds that follow each other are to have nothing in common.
  pattern.start = splitMix(seed, 0);
  return pattern;
}

}  // namespace providers::memory
