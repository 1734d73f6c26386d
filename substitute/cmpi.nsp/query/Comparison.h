#pragma once

#include <cstdint>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/query/Query.h"

namespace cmpinsp::query {

/// Whether a condition holds. With a value missing that it depends on, that is unknown.
enum class Truth : std::uint8_t { kFalse, kUnknown, kTrue };

inline Truth truthOf(bool holds) { return holds ? Truth::kTrue : Truth::kFalse; }
inline Truth opposite(Truth truth) {
  return static_cast<Truth>(static_cast<int>(Truth::kTrue) - static_cast<int>(truth));
}

/// `left op right` for the operators from `kEqual` to `kLessOrEqual`. Numbers compare by what they
/// count, whatever their types; texts byte by byte; date-times, also those written as text, by the
/// time they mean. Booleans and references have no order. Throws `QueryError` (types) for what
/// cannot be compared.
Truth compare(Operator op, const NZELVOR20::TCIMValue& left, const NZELVOR20::TCIMValue& right);

/// Text for LIKE: that of a string, a date-time or a character. Throws `QueryError` (types).
std::string textForLike(const NZELVOR20::TCIMValue& value);

}  // namespace cmpinsp::query
