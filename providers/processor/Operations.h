#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace providers {

/// What every result passes through on its way from the unit under test to its check: the place
/// where a test can put a fault in.
class ResultTap {
 public:
  virtual ~ResultTap() = default;
  virtual std::uint64_t pass(std::uint64_t result) { return result; }
};

/// A result that was not the right one.
struct Mismatch {
  std::uint64_t expected = 0;
  std::uint64_t actual = 0;
};

/// Something that a processor has to be able to do. `run` does it many times, with numbers that the
/// seed decides, and compares each result with one that was got another way; it returns the first
/// mismatch. It takes some milliseconds and may run on many threads at once.
struct Operation {
  const char* name;
  std::optional<Mismatch> (*run)(std::uint64_t seed, ResultTap& tap);
};

/// All operations that this processor can do.
const std::vector<Operation>& processorOperations();

inline std::optional<Mismatch> compare(std::uint64_t expected, std::uint64_t actual) {
  if (expected == actual) return std::nullopt;
  return Mismatch{expected, actual};
}

// The single operations.
std::optional<Mismatch> multiplyIntegers(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> divideIntegers(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> rotateBits(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> calculateExactly(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> roundProducts(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> iterateFloats(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> calculateVectors(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> calculateWideVectors(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> fuseMultiplyAdd(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> computeChecksums(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> sievePrimes(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> multiplyMatrices(std::uint64_t seed, ResultTap& tap);
std::optional<Mismatch> walkCaches(std::uint64_t seed, ResultTap& tap);

/// Whether this processor has the units for the wide vectors and the fused multiplication.
bool hasWideVectors();

}  // namespace providers
