#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace providers::memory {

/// Words are gone over a cache line at a time: a line half of which is written past the caches
/// would have to be read for the other half.
constexpr std::size_t kLineWords = 8;
constexpr std::size_t kLineBytes = kLineWords * sizeof(std::uint64_t);

/// What a word is to hold, as a function of its number.
struct Pattern {
  enum class Kind : std::uint8_t {
    Table,        ///< word i holds entry i % 64 of the table
    AddressBits,  ///< the entries of the bits that are set in i, one XOR the other
    Counting,     ///< start + i * step
    Random        ///< a number that belongs to `start` and i
  };

  Kind kind = Kind::Table;
  std::uint64_t invert = 0;  ///< XOR this: all bits or none
  std::uint64_t start = 0;
  std::uint64_t step = 0;
  std::array<std::uint64_t, 64> table{};

  /// The word's value: the definition that every loop has to agree with.
  std::uint64_t at(std::uint64_t index) const;
  Pattern inverse() const;
  bool operator==(const Pattern& other) const;
};

Pattern constantPattern(std::uint64_t value);

/// One bit is set in each word, the next one in the next word; `shift` is the bit of word 0.
Pattern walkingPattern(unsigned shift);

/// All ones where bit `bit` of the word's number is set, else all zeros.
Pattern addressBitPattern(unsigned bit);

/// A number of its own for each bit of the word's number, so that words whose numbers differ by
/// powers of two differ in many bits. No two words are the same.
Pattern powerOfTwoPattern();

/// Each word holds its own address.
Pattern ownAddressPattern(const void* words);

/// Counts up in each byte.
Pattern countingPattern();

Pattern randomPattern(std::uint64_t seed);

/// The two constants of the random numbers: what is added from word to word, and multiplied by.
constexpr std::uint64_t kRandomStep = 0x9E3779B97F4A7C15ULL;
constexpr std::uint32_t kRandomFactor = 0xCAF649A9U;

}  // namespace providers::memory
