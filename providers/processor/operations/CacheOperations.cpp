#include "providers/processor/operations/CacheOperations.h"

#include <algorithm>
#include <numeric>

#include "providers/processor/operations/Bits.h"

namespace providers {

namespace {

constexpr std::size_t kLineWords = 8;
constexpr unsigned kPasses = 4;

std::uint64_t change(std::uint64_t result, std::uint64_t operand, unsigned pass) {
  return rotateLeft(result, 9) + (operand ^ pass);
}

/// A step that leads through all lines, far from each other.
std::size_t strideFor(std::size_t lines) {
  std::size_t stride = lines * 5 / 8 | 1;
  while (std::gcd(stride, lines) != 1) stride += 2;
  return stride % lines;
}

void lineBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  const std::size_t stride = strideFor(items);
  std::copy(operands, operands + items * kLineWords, results);
  for (unsigned pass = 0; pass < kPasses; ++pass) {
    std::size_t line = pass % items;
    for (std::size_t step = 0; step < items; ++step) {
      for (std::size_t i = line * kLineWords; i < (line + 1) * kLineWords; ++i)
        results[i] = change(results[i], operands[i], pass);
      line = (line + stride) % items;
    }
  }
}

void lineAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  for (std::size_t i = 0; i < kLineWords; ++i) {
    std::uint64_t word = operands[i];
    for (unsigned pass = 0; pass < kPasses; ++pass) word = change(word, operands[i], pass);
    results[i] = word;
  }
}

}  // namespace

Operation cacheOperation(const char* name, std::size_t bytes) {
  constexpr std::size_t kItemBytes = 2 * kLineWords * sizeof(std::uint64_t);  // and its operands
  const std::size_t items = std::max<std::size_t>(bytes / kItemBytes, 1);
  return {name, Unit::Cache, kLineWords, kLineWords, items, nullptr, lineBlock, lineAnswer};
}

}  // namespace providers
