#include "providers/processor/operations/Bits.h"
#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/OperationTable.h"

#if DIAGS_X86
#include <immintrin.h>
#endif

// Shifts, rotations, counts and rearrangements of bits, and moves of strings.

namespace providers {

namespace {

constexpr unsigned kSteps = 16;

struct Machine {
  static std::uint64_t rotate(std::uint64_t x, std::uint64_t by) { return rotateLeft(x, by); }
  static std::uint64_t swap(std::uint64_t x) { return __builtin_bswap64(x); }
  static std::uint64_t above(std::uint64_t x) {
    return static_cast<std::uint64_t>(__builtin_clzll(x));
  }
  static std::uint64_t below(std::uint64_t x) {
    return static_cast<std::uint64_t>(__builtin_ctzll(x));
  }
};

/// The same with each bit on its own.
struct BitByBit {
  static std::uint64_t rotate(std::uint64_t x, std::uint64_t by) {
    std::uint64_t result = 0;
    for (unsigned bit = 0; bit < kBits; ++bit) result |= (x >> bit & 1) << ((bit + by) % kBits);
    return result;
  }
  static std::uint64_t swap(std::uint64_t x) {
    std::uint64_t result = 0;
    for (unsigned bit = 0; bit < kBits; ++bit) result |= (x >> bit & 1) << (bit ^ 56U);
    return result;
  }
  static std::uint64_t above(std::uint64_t x) {
    std::uint64_t count = 0;
    for (unsigned bit = kBits; bit-- > 0 && !(x >> bit & 1);) ++count;
    return count;
  }
  static std::uint64_t below(std::uint64_t x) {
    std::uint64_t count = 0;
    for (unsigned bit = 0; bit < kBits && !(x >> bit & 1); ++bit) ++count;
    return count;
  }
};

template <class Way>
void bitItem(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint64_t x = operands[0], y = operands[1];
  for (unsigned step = 0; step < kSteps; ++step) {
    x = Way::rotate(x, y) ^ Way::swap(y);
    y = Way::rotate(y, 21) + (Way::above(x | 1) << 9) + Way::below(x | std::uint64_t{1} << 63);
    x ^= y >> (x & 31) ^ y << (x >> 59);
  }
  results[0] = x;
  results[1] = y;
}

void bitBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item)
    bitItem<Machine>(operands + 2 * item, results + 2 * item);
}

#if DIAGS_X86

std::uint64_t countOnes(std::uint64_t x) {
  std::uint64_t count = 0;
  for (; x; x &= x - 1) ++count;
  return count;
}

/// Moves the bits of `x` that `mask` chooses to the low end.
std::uint64_t gather(std::uint64_t x, std::uint64_t mask) {
  std::uint64_t result = 0;
  unsigned place = 0;
  for (unsigned bit = 0; bit < kBits; ++bit)
    if (mask >> bit & 1) result |= (x >> bit & 1) << place++;
  return result;
}

/// Moves low bits of `x` to where `mask` has ones.
std::uint64_t scatter(std::uint64_t x, std::uint64_t mask) {
  std::uint64_t result = 0;
  unsigned place = 0;
  for (unsigned bit = 0; bit < kBits; ++bit)
    if (mask >> bit & 1) result |= (x >> place++ & 1) << bit;
  return result;
}

__attribute__((target("popcnt"))) void countBlock(const std::uint64_t* operands,
                                                  std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item) {
    std::uint64_t x = operands[item];
    for (unsigned step = 0; step < kSteps; ++step)
      x = rotateLeft(x, 11) ^ static_cast<std::uint64_t>(_mm_popcnt_u64(x)) << step;
    results[item] = x;
  }
}

void countAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint64_t x = *operands;
  for (unsigned step = 0; step < kSteps; ++step) x = rotateLeft(x, 11) ^ countOnes(x) << step;
  *results = x;
}

__attribute__((target("bmi2"))) void scatterBlock(const std::uint64_t* operands,
                                                  std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item) {
    std::uint64_t x = operands[2 * item], mask = operands[2 * item + 1];
    for (unsigned step = 0; step < kSteps; ++step) {
      const std::uint64_t high = _pdep_u64(x, mask);
      const std::uint64_t low = _pext_u64(x, mask);
      x = high ^ rotateLeft(low, 32) ^ rotateLeft(x, 5);
      mask = rotateLeft(mask, 19) ^ high;
    }
    results[2 * item] = x;
    results[2 * item + 1] = mask;
  }
}

void scatterAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint64_t x = operands[0], mask = operands[1];
  for (unsigned step = 0; step < kSteps; ++step) {
    const std::uint64_t high = scatter(x, mask);
    x = high ^ rotateLeft(gather(x, mask), 32) ^ rotateLeft(x, 5);
    mask = rotateLeft(mask, 19) ^ high;
  }
  results[0] = x;
  results[1] = mask;
}

constexpr std::size_t kStringWords = 8;
constexpr std::size_t kStringBytes = 24;
constexpr std::size_t kStringResults = kStringWords + kStringBytes / sizeof(std::uint64_t);

/// Moves strings by the instructions for them: words, and bytes from any place within a word.
void moveBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item, operands += kStringWords) {
    const std::uint64_t* from = operands;
    std::size_t words = kStringWords;
    asm volatile("rep movsq" : "+S"(from), "+D"(results), "+c"(words) : : "memory");
    const auto* source = reinterpret_cast<const char*>(operands) + *operands % sizeof *operands;
    std::size_t bytes = kStringBytes;
    asm volatile("rep movsb" : "+S"(source), "+D"(results), "+c"(bytes) : : "memory");
  }
}

void moveAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  const std::uint64_t shift = *operands % sizeof *operands * 8;
  for (std::size_t i = 0; i < kStringWords; ++i) results[i] = operands[i];
  for (std::size_t i = 0; i < kStringResults - kStringWords; ++i)
    results[kStringWords + i] =
        operands[i] >> shift | (shift ? operands[i + 1] << (kBits - shift) : 0);
}

#endif

}  // namespace

void addBitOperations(Operations& operations) {
  operations.push_back(
      {"Shifts and rotations", Unit::Integer, 2, 2, 128, nullptr, bitBlock, bitItem<BitByBit>});
#if DIAGS_X86
  operations.push_back({"String moves", Unit::Integer, kStringWords, kStringResults, 128, nullptr,
                        moveBlock, moveAnswer});
  if (features().popcnt)
    operations.push_back(
        {"Bit counting (POPCNT)", Unit::Integer, 1, 1, 256, nullptr, countBlock, countAnswer});
  if (features().bmi)
    operations.push_back({"Bit scattering and gathering (BMI2)", Unit::Integer, 2, 2, 64, nullptr,
                          scatterBlock, scatterAnswer});
#endif
}

}  // namespace providers
