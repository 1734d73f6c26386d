#include <cmath>
#include <cstring>

#include "providers/processor/kernels/MatrixKernels.h"

namespace providers {

namespace {

template <class To, class From>
To bitsAs(From value) {
  static_assert(sizeof(To) == sizeof(From));
  To result;
  std::memcpy(&result, &value, sizeof result);
  return result;
}

/// An integer of so many bits, with a sign.
template <class Number>
Number signedInteger(std::uint64_t word, unsigned bits) {
  const auto half = std::int64_t{1} << (bits - 1);
  return static_cast<Number>(static_cast<std::int64_t>(word & ((1U << bits) - 1)) - half);
}

float number32(const std::uint64_t* words, std::size_t index) {
  return bitsAs<float>(static_cast<std::uint32_t>(words[index / 2] >> (index % 2 * 32)));
}

/// Columns stand one after the other.
template <class Get>
std::int64_t productElement(Get get, std::size_t row, std::size_t column) {
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < kMatrixSize; ++i)
    sum += std::llround(get(i * kMatrixSize + row)) *
           std::llround(get(kMatrixWords + column * kMatrixSize + i));
  return sum;
}

}  // namespace

void shapeMatrices64(std::uint64_t* operands) {
  constexpr unsigned kNumberBits = 21;
  for (std::size_t i = 0; i < 2 * kMatrixWords; ++i)
    operands[i] = bitsAs<std::uint64_t>(signedInteger<double>(operands[i], kNumberBits));
}

void shapeMatrices32(std::uint64_t* operands) {
  constexpr unsigned kNumberBits = 9;
  for (std::size_t i = 0; i < kMatrixWords; ++i) {
    const auto low = bitsAs<std::uint32_t>(signedInteger<float>(operands[i], kNumberBits));
    const auto high = bitsAs<std::uint32_t>(signedInteger<float>(operands[i] >> 32, kNumberBits));
    operands[i] = std::uint64_t{high} << 32 | low;
  }
}

void shapeVectors(std::uint64_t* operands) {
  constexpr unsigned kNumberBits = 31;
  const double scale = std::ldexp(1.0, 1 - static_cast<int>(kNumberBits));
  for (std::size_t i = 0; i < kSvdOperands; ++i)
    operands[i] =
        bitsAs<std::uint64_t>(signedInteger<double>(operands[i] | 1, kNumberBits) * scale);
}

void productAnswer64(const std::uint64_t* operands, std::uint64_t* results) {
  const auto get = [operands](std::size_t index) { return bitsAs<double>(operands[index]); };
  for (std::size_t i = 0; i < kMatrixWords; ++i)
    results[i] = bitsAs<std::uint64_t>(
        static_cast<double>(productElement(get, i % kMatrixSize, i / kMatrixSize)));
}

void productAnswer32(const std::uint64_t* operands, std::uint64_t* results) {
  const auto get = [operands](std::size_t index) { return number32(operands, index); };
  for (std::size_t i = 0; i < kMatrixWords; ++i) {
    const auto bits = bitsAs<std::uint32_t>(
        static_cast<float>(productElement(get, i % kMatrixSize, i / kMatrixSize)));
    results[i / 2] = i % 2 ? results[i / 2] | std::uint64_t{bits} << 32 : bits;
  }
}

}  // namespace providers
