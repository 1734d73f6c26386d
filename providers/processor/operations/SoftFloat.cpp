#include "providers/processor/operations/SoftFloat.h"

#include <algorithm>

namespace providers {

namespace {

__extension__ using Uint128 = unsigned __int128;

unsigned bitLength(Uint128 value) {
  unsigned length = 0;
  for (unsigned half = 64; half > 0; half /= 2) {
    if (value >> half == 0) continue;
    value >>= half;
    length += half;
  }
  return length + static_cast<unsigned>(value);
}

Uint128 sum(Uint128 left, Uint128 right) { return left + right; }

Uint128 distance(Uint128 left, Uint128 right) { return left > right ? left - right : right - left; }

}  // namespace

/// `more` tells that the true value is a bit larger than the mantissa.
SoftFloat SoftArithmetic::round(Uint128 mantissa, int exponent, bool more) const {
  const unsigned length = bitLength(mantissa);
  if (length == 0) return {};
  if (length <= m_digits) {
    const unsigned shift = m_digits - length;
    return {static_cast<std::uint64_t>(mantissa << shift), exponent - static_cast<int>(shift)};
  }
  const unsigned shift = length - m_digits;
  const Uint128 half = Uint128{1} << (shift - 1);
  const Uint128 rest = mantissa & (2 * half - 1);
  Uint128 rounded = mantissa >> shift;
  if (rest > half || (rest == half && (more || (rounded & 1)))) ++rounded;
  exponent += static_cast<int>(shift);
  if (rounded >> m_digits) {
    rounded >>= 1;
    ++exponent;
  }
  return {static_cast<std::uint64_t>(rounded), exponent};
}

template <class Combine>
SoftFloat SoftArithmetic::combine(Uint128 left, int leftExponent, Uint128 right, int rightExponent,
                                  Combine function) const {
  const int exponent = std::min(leftExponent, rightExponent);
  return round(function(left << (leftExponent - exponent), right << (rightExponent - exponent)),
               exponent, false);
}

SoftFloat SoftArithmetic::multiply(SoftFloat left, SoftFloat right) const {
  return round(Uint128{left.mantissa} * right.mantissa, left.exponent + right.exponent, false);
}

SoftFloat SoftArithmetic::add(SoftFloat left, SoftFloat right) const {
  return combine(left.mantissa, left.exponent, right.mantissa, right.exponent, sum);
}

SoftFloat SoftArithmetic::difference(SoftFloat left, SoftFloat right) const {
  return combine(left.mantissa, left.exponent, right.mantissa, right.exponent, distance);
}

SoftFloat SoftArithmetic::divide(SoftFloat dividend, SoftFloat divisor) const {
  constexpr int kShift = 63;
  const Uint128 wide = Uint128{dividend.mantissa} << kShift;
  return round(wide / divisor.mantissa, dividend.exponent - kShift - divisor.exponent,
               wide % divisor.mantissa != 0);
}

SoftFloat SoftArithmetic::squareRoot(SoftFloat value) const {
  // As many digits as there is room for, and an exponent that has a half.
  int shift = static_cast<int>(126 - bitLength(value.mantissa));
  if ((value.exponent - shift) % 2 != 0) --shift;
  Uint128 rest = Uint128{value.mantissa} << shift;
  Uint128 root = 0;
  for (Uint128 bit = Uint128{1} << 126; bit; bit >>= 2) {
    const bool fits = rest >= root + bit;
    if (fits) rest -= root + bit;
    root = (root >> 1) + (fits ? bit : 0);
  }
  return round(root, (value.exponent - shift) / 2, rest != 0);
}

SoftFloat SoftArithmetic::multiplyAdd(SoftFloat left, SoftFloat right, SoftFloat summand) const {
  return combine(Uint128{left.mantissa} * right.mantissa, left.exponent + right.exponent,
                 summand.mantissa, summand.exponent, sum);
}

SoftFloat SoftArithmetic::multiplySubtract(SoftFloat left, SoftFloat right,
                                           SoftFloat subtrahend) const {
  return combine(Uint128{left.mantissa} * right.mantissa, left.exponent + right.exponent,
                 subtrahend.mantissa, subtrahend.exponent, distance);
}

SoftFloat SoftArithmetic::fromInteger(std::uint64_t value) const { return round(value, 0, false); }

SoftFloat SoftArithmetic::unit(std::uint64_t fraction) const {
  const std::uint64_t one = std::uint64_t{1} << (m_digits - 1);
  return {one | (fraction & (one - 1)), 1 - static_cast<int>(m_digits)};
}

std::uint64_t SoftArithmetic::fraction(SoftFloat value) const {
  return value.mantissa & ((std::uint64_t{1} << (m_digits - 1)) - 1);
}

}  // namespace providers
