#include "providers/processor/operations/Bits.h"
#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/OperationTable.h"

// 8, 16, 32 and 64 bits of the same registers.

namespace providers {

namespace {

constexpr unsigned kSteps = 16;

/// A part of a word that is `bits` wide takes another value; the rest stays.
std::uint64_t replacePart(std::uint64_t word, std::uint64_t part, unsigned bits) {
  const std::uint64_t mask = (std::uint64_t{1} << bits) - 1;
  return (word & ~mask) | (part & mask);
}

std::uint64_t extendSign(std::uint64_t word, unsigned bits) {
  const std::uint64_t sign = std::uint64_t{1} << (bits - 1);
  return ((word & (2 * sign - 1)) ^ sign) - sign;
}

/// With masks and 64 bits alone.
void widthAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint64_t x = operands[0], y = operands[1];
  for (unsigned step = 0; step < kSteps; ++step) {
    x = replacePart(x, x + y, 8);
    x = rotateLeft(replacePart(rotateLeft(x, 56), (x >> 8) ^ (y >> 8), 8), 8);
    x = replacePart(x, x * (y >> 16), 16);
    std::uint64_t half = (x + (y >> 32)) & 0xFFFFFFFF;
    x = rotateLeft(x, 16) + half;
    half = extendSign(y, 8) + extendSign(y >> 8, 16) + extendSign(x, 32);
    y = rotateLeft(y, 24) ^ half;
  }
  results[0] = x;
  results[1] = y;
}

#if DIAGS_X86

void widthBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item) {
    std::uint64_t x = operands[2 * item], y = operands[2 * item + 1];
    for (unsigned step = 0; step < kSteps; ++step) {
      std::uint64_t half = y >> 16, sum = y >> 32, extended, sign;
      asm volatile(
          "addb %b[y], %b[x]\n\t"
          "rorq $8, %[x]\n\t"
          "rorq $8, %[y]\n\t"
          "xorb %b[y], %b[x]\n\t"
          "rolq $8, %[y]\n\t"
          "rolq $8, %[x]\n\t"
          "imulw %w[half], %w[x]\n\t"
          "addl %k[x], %k[sum]\n\t"
          "rolq $16, %[x]\n\t"
          "addq %[sum], %[x]\n\t"
          "movsbq %b[y], %[extended]\n\t"
          "movq %[y], %[sign]\n\t"
          "shrq $8, %[sign]\n\t"
          "movswq %w[sign], %[sign]\n\t"
          "addq %[sign], %[extended]\n\t"
          "movslq %k[x], %[sign]\n\t"
          "addq %[sign], %[extended]\n\t"
          "rolq $24, %[y]\n\t"
          "xorq %[extended], %[y]"
          : [x] "+&q"(x), [y] "+&q"(y), [sum] "+&q"(sum), [extended] "=&q"(extended),
            [sign] "=&q"(sign)
          : [half] "q"(half)
          : "cc");
    }
    results[2 * item] = x;
    results[2 * item + 1] = y;
  }
}

#else

/// The compiler chooses the registers' widths by the types.
void widthBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item) {
    std::uint64_t x = operands[2 * item], y = operands[2 * item + 1];
    for (unsigned step = 0; step < kSteps; ++step) {
      const auto byte = static_cast<std::uint8_t>(x + y);
      const auto next = static_cast<std::uint8_t>((x >> 8) ^ (y >> 8));
      const auto low = static_cast<std::uint16_t>(next << 8 | byte);
      const auto product = static_cast<std::uint16_t>(low * static_cast<std::uint16_t>(y >> 16));
      x = (x & ~std::uint64_t{0xFFFF}) | product;
      const std::uint32_t sum = static_cast<std::uint32_t>(x) + static_cast<std::uint32_t>(y >> 32);
      x = rotateLeft(x, 16) + sum;
      const std::int64_t extended = std::int64_t{static_cast<std::int8_t>(y)} +
                                    static_cast<std::int16_t>(y >> 8) +
                                    static_cast<std::int32_t>(x);
      y = rotateLeft(y, 24) ^ static_cast<std::uint64_t>(extended);
    }
    results[2 * item] = x;
    results[2 * item + 1] = y;
  }
}

#endif

}  // namespace

void addWidthOperations(Operations& operations) {
  operations.push_back({"8, 16, 32 and 64 bits of a register", Unit::Width, 2, 2, 128, nullptr,
                        widthBlock, widthAnswer});
}

}  // namespace providers
