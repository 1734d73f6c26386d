#pragma once

#include <cstdint>

namespace providers {

/// A binary floating-point number that is not negative: `mantissa` times 2 to the `exponent`. The
/// mantissa has the format's number of bits, or is 0.
struct SoftFloat {
  std::uint64_t mantissa = 0;
  int exponent = 0;
};

/// Arithmetic of IEEE 754 by integers alone, rounded to the nearest number with `digits` bits, ties
/// to even. For numbers that are near each other: an exponent is never too large or too small, and
/// two summands' exponents differ by at most 32.
class SoftArithmetic {
 public:
  explicit constexpr SoftArithmetic(unsigned digits) : m_digits(digits) {}

  SoftFloat multiply(SoftFloat left, SoftFloat right) const;
  SoftFloat add(SoftFloat left, SoftFloat right) const;
  /// Without its sign.
  SoftFloat difference(SoftFloat left, SoftFloat right) const;
  SoftFloat divide(SoftFloat dividend, SoftFloat divisor) const;
  SoftFloat squareRoot(SoftFloat value) const;
  /// Rounded once: left * right + summand.
  SoftFloat multiplyAdd(SoftFloat left, SoftFloat right, SoftFloat summand) const;
  /// Rounded once: left * right - subtrahend, without its sign.
  SoftFloat multiplySubtract(SoftFloat left, SoftFloat right, SoftFloat subtrahend) const;
  SoftFloat fromInteger(std::uint64_t value) const;

  /// The number between 1 and 2 that has this fraction.
  SoftFloat unit(std::uint64_t fraction) const;
  /// The fraction alone: what is left when the number is brought between 1 and 2.
  std::uint64_t fraction(SoftFloat value) const;

 private:
  __extension__ using Uint128 = unsigned __int128;

  SoftFloat round(Uint128 mantissa, int exponent, bool more) const;
  template <class Combine>
  SoftFloat combine(Uint128 left, int leftExponent, Uint128 right, int rightExponent,
                    Combine function) const;

  const unsigned m_digits;
};

}  // namespace providers
