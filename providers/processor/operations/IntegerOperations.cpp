#include "providers/processor/operations/Bits.h"
#include "providers/processor/operations/OperationTable.h"

// Multiplication, division, addition with carry, and branches. Each chain is written once, and gets
// its calculation in two ways.

namespace providers {

namespace {

constexpr unsigned kSteps = 16;

struct Wide {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
};

struct Divided {
  std::uint64_t quotient = 0;
  std::uint64_t rest = 0;
};

__extension__ using Uint128 = unsigned __int128;

Wide multiply(std::uint64_t left, std::uint64_t right) {
  const Uint128 product = static_cast<Uint128>(left) * right;
  return {static_cast<std::uint64_t>(product), static_cast<std::uint64_t>(product >> kBits)};
}

/// The product by additions alone.
Wide multiplyByAdding(std::uint64_t left, std::uint64_t right) {
  Wide product;
  for (unsigned bit = 0; bit < kBits; ++bit) {
    if (!(right >> bit & 1)) continue;
    const std::uint64_t low = left << bit;
    product.low += low;
    product.high += (bit ? left >> (kBits - bit) : 0) + (product.low < low ? 1 : 0);
  }
  return product;
}

Divided divide(std::uint64_t dividend, std::uint64_t divisor) {
  return {dividend / divisor, dividend % divisor};
}

/// The quotient by subtractions alone, bit by bit as on paper.
Divided divideBySubtracting(std::uint64_t dividend, std::uint64_t divisor) {
  Divided result;
  for (unsigned bit = kBits; bit-- > 0;) {
    const bool overflows = result.rest >> (kBits - 1) & 1;
    result.rest = result.rest << 1 | (dividend >> bit & 1);
    if (!overflows && result.rest < divisor) continue;
    result.rest -= divisor;
    result.quotient |= std::uint64_t{1} << bit;
  }
  return result;
}

template <Wide (*kMultiply)(std::uint64_t, std::uint64_t)>
void multiplyItem(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint64_t x = operands[0], y = operands[1] | 1;
  for (unsigned step = 0; step < kSteps; ++step) {
    const Wide product = kMultiply(x, y);
    x = product.low ^ rotateLeft(product.high, 17);
    y = (y + product.high) | 1;
  }
  results[0] = x;
  results[1] = y;
}

template <Divided (*kDivide)(std::uint64_t, std::uint64_t)>
void divideItem(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint64_t x = operands[0], y = operands[1];
  for (unsigned step = 0; step < kSteps; ++step) {
    // Divisors of every length, so that quotients are of every length, too.
    const Divided result = kDivide(x, y >> (7 * step % 61) | 1);
    x = rotateLeft(x, 23) ^ result.quotient;
    y = rotateLeft(y, 3) ^ result.rest;
  }
  results[0] = x;
  results[1] = y;
}

std::uint64_t addOnce(std::uint64_t left, std::uint64_t right, std::uint64_t& carry) {
  const Uint128 sum = static_cast<Uint128>(left) + right + carry;
  carry = static_cast<std::uint64_t>(sum >> kBits);
  return static_cast<std::uint64_t>(sum);
}

/// The sum without an addition.
std::uint64_t addBitByBit(std::uint64_t left, std::uint64_t right, std::uint64_t& carry) {
  std::uint64_t sum = 0;
  for (unsigned bit = 0; bit < kBits; ++bit) {
    const std::uint64_t a = left >> bit & 1, b = right >> bit & 1;
    sum |= (a ^ b ^ carry) << bit;
    carry = (a & b) | (carry & (a ^ b));
  }
  return sum;
}

constexpr std::size_t kLimbs = 4;

template <std::uint64_t (*kAdd)(std::uint64_t, std::uint64_t, std::uint64_t&)>
void addItem(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint64_t x[kLimbs], y[kLimbs];
  for (std::size_t i = 0; i < kLimbs; ++i) {
    x[i] = operands[i];
    y[i] = operands[kLimbs + i];
  }
  for (unsigned step = 0; step < kSteps; ++step) {
    std::uint64_t carry = step & 1;
    for (std::size_t i = 0; i < kLimbs; ++i) {
      const std::uint64_t sum = kAdd(x[i], y[i], carry);
      y[i] = x[i];
      x[i] = rotateLeft(sum, 1);
    }
    x[0] ^= carry;
  }
  for (std::size_t i = 0; i < kLimbs; ++i) results[i] = x[i] ^ rotateLeft(y[i], 32);
}

constexpr std::size_t kSorted = 8;

/// Insertion, which branches with every comparison.
void sortItem(const std::uint64_t* operands, std::uint64_t* results) {
  for (std::size_t i = 0; i < kSorted; ++i) {
    std::size_t place = i;
    for (; place > 0 && results[place - 1] > operands[i]; --place)
      results[place] = results[place - 1];
    results[place] = operands[i];
  }
}

/// Each at the place that is the number of those below it: no branch depends on the numbers.
void rankItem(const std::uint64_t* operands, std::uint64_t* results) {
  for (std::size_t i = 0; i < kSorted; ++i) {
    std::size_t rank = 0;
    for (std::size_t other = 0; other < kSorted; ++other)
      rank += operands[other] < operands[i] || (operands[other] == operands[i] && other < i);
    results[rank] = operands[i];
  }
}

template <void (*kItem)(const std::uint64_t*, std::uint64_t*), std::size_t kOperands,
          std::size_t kResults>
void eachItem(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item)
    kItem(operands + item * kOperands, results + item * kResults);
}

}  // namespace

void addIntegerOperations(Operations& operations) {
  operations.push_back({"Integer multiplication", Unit::Integer, 2, 2, 128, nullptr,
                        eachItem<multiplyItem<multiply>, 2, 2>, multiplyItem<multiplyByAdding>});
  operations.push_back({"Integer division", Unit::Integer, 2, 2, 64, nullptr,
                        eachItem<divideItem<divide>, 2, 2>, divideItem<divideBySubtracting>});
  operations.push_back({"Addition with carry", Unit::Integer, 2 * kLimbs, kLimbs, 64, nullptr,
                        eachItem<addItem<addOnce>, 2 * kLimbs, kLimbs>, addItem<addBitByBit>});
  operations.push_back({"Comparison and branch", Unit::Integer, kSorted, kSorted, 128, nullptr,
                        eachItem<sortItem, kSorted, kSorted>, rankItem});
}

}  // namespace providers
