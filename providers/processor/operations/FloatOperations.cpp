#include <cmath>
#include <cstring>

#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/FloatChain.h"
#include "providers/processor/operations/OperationTable.h"

// Single numbers, in the formats of 32, 64 and, where there is one, 80 bits.

namespace providers {

namespace {

template <class To, class From>
To bitsAs(From value) {
  static_assert(sizeof(To) == sizeof(From));
  To result;
  std::memcpy(&result, &value, sizeof result);
  return result;
}

/// The number of the same fraction between 1 and 2.
double unit(double value) {
  return bitsAs<double>((bitsAs<std::uint64_t>(value) & kFraction64) | kOne64);
}

float unit(float value) {
  return bitsAs<float>((bitsAs<std::uint32_t>(value) & kFraction32) | kOne32);
}

template <class Word, class Number>
Word chain(Number x, Number y, Number z, Number w) {
  Word all = 0;
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    x = unit(x * y + z);
    all ^= bitsAs<Word>(x);
    x = unit(x / w);
    all ^= bitsAs<Word>(x);
    x = unit(std::sqrt(x) + y);
    all ^= bitsAs<Word>(x);
    x = unit((x + w) - z);
    all ^= bitsAs<Word>(x);
  }
  return all;
}

void float64Block(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t i = 0; i < items; ++i, operands += 4)
    results[i] = chain<std::uint64_t>(bitsAs<double>(operands[0]), bitsAs<double>(operands[1]),
                                      bitsAs<double>(operands[2]), bitsAs<double>(operands[3]));
}

float number32(std::uint64_t word) { return bitsAs<float>(static_cast<std::uint32_t>(word)); }

std::uint64_t chain32(const std::uint64_t* operands, unsigned shift) {
  return chain<std::uint32_t>(number32(operands[0] >> shift), number32(operands[1] >> shift),
                              number32(operands[2] >> shift), number32(operands[3] >> shift));
}

void float32Block(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t i = 0; i < items; ++i, operands += 4)
    results[i] = chain32(operands, 32) << 32 | chain32(operands, 0);
}

/// Integers of any length to floating point and back.
void convertBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t i = 0; i < items; ++i, results += 3) {
    const auto value = static_cast<std::int64_t>(operands[i]);
    const auto number = static_cast<double>(value);
    results[0] = bitsAs<std::uint64_t>(number);
    results[1] = bitsAs<std::uint32_t>(static_cast<float>(value));
    results[2] = static_cast<std::uint64_t>(static_cast<std::int64_t>(number / 1024));
  }
}

void shapeInteger(std::uint64_t* operands) { *operands = *operands >> (1 + *operands % 48) | 1; }

void convertAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  constexpr unsigned kDigits64 = 53, kDigits32 = 24;
  const SoftFloat number = SoftArithmetic(kDigits64).fromInteger(*operands);
  const SoftFloat single = SoftArithmetic(kDigits32).fromInteger(*operands);
  results[0] = (kOne64 + (static_cast<std::uint64_t>(number.exponent + 52) << 52)) |
               (number.mantissa & kFraction64);
  results[1] = (kOne32 + (static_cast<std::uint64_t>(single.exponent + 23) << 23)) |
               (single.mantissa & kFraction32);
  const int shift = number.exponent - 10;
  if (shift <= -64) {
    results[2] = 0;
  } else {
    results[2] = shift < 0 ? number.mantissa >> -shift : number.mantissa << shift;
  }
}

#if DIAGS_X86

/// The format of the x87 unit has its leading one in the mantissa.
long double unit80(std::uint64_t fraction) {
  const struct {
    std::uint64_t mantissa;
    std::uint64_t exponent;
  } bits{fraction | std::uint64_t{1} << 63, 0x3FFF};
  long double number = 0;
  static_assert(sizeof number == sizeof bits);
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

std::uint64_t mantissa80(long double number) {
  std::uint64_t mantissa;
  std::memcpy(&mantissa, &number, sizeof mantissa);
  return mantissa;
}

/// While it lives, the thread's x87 unit rounds to all 64 bits. A thread of Windows begins with 53.
class FullPrecision {
 public:
  FullPrecision() {
    constexpr std::uint16_t kFull = 0x037F;
    asm volatile("fnstcw %0" : "=m"(m_before));
    asm volatile("fldcw %0" : : "m"(kFull));
  }
  ~FullPrecision() { asm volatile("fldcw %0" : : "m"(m_before)); }
  FullPrecision(const FullPrecision&) = delete;
  FullPrecision& operator=(const FullPrecision&) = delete;

 private:
  std::uint16_t m_before = 0;
};

void float80Block(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  const FullPrecision precision;
  for (std::size_t i = 0; i < items; ++i, operands += 4) {
    long double x = unit80(operands[0]);
    const long double y = unit80(operands[1]), z = unit80(operands[2]), w = unit80(operands[3]);
    std::uint64_t all = 0;
    for (unsigned step = 0; step < kFloatSteps; ++step) {
      x = unit80(mantissa80(x * y + z));
      all ^= mantissa80(x);
      x = unit80(mantissa80((x + w) - z));
      all ^= mantissa80(x);
    }
    results[i] = all;
  }
}

void float80Answer(const std::uint64_t* operands, std::uint64_t* results) {
  constexpr SoftArithmetic kArithmetic(64);
  SoftFloat x = kArithmetic.unit(operands[0]);
  const SoftFloat y = kArithmetic.unit(operands[1]), z = kArithmetic.unit(operands[2]),
                  w = kArithmetic.unit(operands[3]);
  std::uint64_t all = 0;
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    x = kArithmetic.unit(kArithmetic.add(kArithmetic.multiply(x, y), z).mantissa);
    all ^= x.mantissa;
    x = kArithmetic.unit(kArithmetic.difference(kArithmetic.add(x, w), z).mantissa);
    all ^= x.mantissa;
  }
  *results = all;
}

#endif

}  // namespace

void addFloatOperations(Operations& operations) {
  operations.push_back({"Floating point, 64 bits", Unit::Float, 4, 1, 64, shapeFloat64<1>,
                        float64Block, float64Answer<1>});
  operations.push_back({"Floating point, 32 bits", Unit::Float, 4, 1, 64, shapeFloat32<1>,
                        float32Block, float32Answer<1>});
  operations.push_back({"Conversion of integers and floating point", Unit::Float, 1, 3, 256,
                        shapeInteger, convertBlock, convertAnswer});
#if DIAGS_X86
  operations.push_back({"Floating point, 80 bits (x87)", Unit::Float, 4, 1, 64, nullptr,
                        float80Block, float80Answer});
#endif
}

}  // namespace providers
