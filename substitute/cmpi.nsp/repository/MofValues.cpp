#include "substitute/cmpi.nsp/repository/MofValues.h"

#include <limits>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/vorcore/values/ClassDeclaration.h"
#include "substitute/vorcore/values/TypeNames.h"

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

constexpr std::uint64_t kLargestSint64 = 0x7FFFFFFFFFFFFFFFULL;

[[noreturn]] void refuse(const Literal& literal, ECIMType type) {
  throw SyntaxError{literal.at, std::string("expected a value of type ") + vorcore::typeName(type)};
}

bool fitsSint64(const Literal& literal) {
  return literal.magnitude <= kLargestSint64 + (literal.negative ? 1U : 0U);
}

TCIMValue signedValue(const Literal& literal) {
  const auto value =
      static_cast<std::int64_t>(literal.negative ? ~literal.magnitude + 1 : literal.magnitude);
  return TCIMValue::Signed(ECIMType::eSint64, value);
}

/// The literal by its own notation, before it takes the declared type.
TCIMValue plainValue(const Literal& literal, ECIMType type) {
  switch (literal.kind) {
    case LiteralKind::eBoolean:
      return TCIMValue::Boolean(literal.truth);
    case LiteralKind::eInteger:
      if (!literal.negative) return TCIMValue::Uint64(literal.magnitude);
      if (fitsSint64(literal)) return signedValue(literal);
      break;
    case LiteralKind::eReal:
      return TCIMValue::Real(ECIMType::eReal64, literal.real);
    case LiteralKind::eCharacter:
      return TCIMValue::Char16(static_cast<std::uint16_t>(literal.magnitude));
    case LiteralKind::eString:
      return TCIMValue(literal.text);
    default:
      break;
  }
  refuse(literal, type);
}

/// The 25 characters of DSP0004, 5.2.4, as far as their layout goes.
bool looksLikeDateTime(const std::string& text) {
  constexpr std::size_t kLength = 25;
  constexpr std::size_t kPoint = 14;
  constexpr std::size_t kSign = 21;
  if (text.size() != kLength || text[kPoint] != '.') return false;
  if (text[kSign] != '+' && text[kSign] != '-' && text[kSign] != ':') return false;
  for (std::size_t at = 0; at < kLength; ++at) {
    const bool isDigit = (text[at] >= '0' && text[at] <= '9') || text[at] == '*';
    if (!isDigit && at != kPoint && at != kSign) return false;
  }
  return true;
}

TCIMValue scalarOf(const Literal& literal, ECIMType type, const LiteralResolver& resolve) {
  if (literal.kind == LiteralKind::eNull) return TCIMValue::Null(type);
  if (type == ECIMType::eReference || type == ECIMType::eInstance) {
    if (!resolve) refuse(literal, type);
    return resolve(literal, type);
  }
  const bool isText = type == ECIMType::eString || type == ECIMType::eDateTime;
  if (isText != (literal.kind == LiteralKind::eString) && isText) refuse(literal, type);
  if (type == ECIMType::eDateTime) {
    if (!looksLikeDateTime(literal.text)) refuse(literal, type);
    return TCIMValue::DateTime(literal.text);
  }
  try {
    return vorcore::convertTo(plainValue(literal, type), type, false);
  } catch (const NZELVOR20::TVORException&) {
    refuse(literal, type);
  }
}

ECIMType guessedType(const Initializer& initializer) {
  bool anyNegative = false;
  ECIMType type = ECIMType::eString;
  for (const Literal& literal : initializer.elements) {
    anyNegative = anyNegative || literal.negative;
    if (literal.kind == LiteralKind::eBoolean) type = ECIMType::eBoolean;
    if (literal.kind == LiteralKind::eInteger) type = ECIMType::eUint64;
    if (literal.kind == LiteralKind::eReal) type = ECIMType::eReal64;
    if (literal.kind == LiteralKind::eCharacter) type = ECIMType::eChar16;
  }
  return type == ECIMType::eUint64 && anyNegative ? ECIMType::eSint64 : type;
}

}  // namespace

TCIMValue valueOf(const Initializer& initializer, ECIMType type, bool isArray,
                  const LiteralResolver& resolve) {
  const bool isNull =
      !initializer.isArray && initializer.elements.front().kind == LiteralKind::eNull;
  if (isNull) return TCIMValue::Null(type, isArray);
  if (!isArray) {
    if (initializer.isArray) throw SyntaxError{initializer.at, "expected one value, found a list"};
    return scalarOf(initializer.elements.front(), type, resolve);
  }
  std::vector<TCIMValue> elements;
  elements.reserve(initializer.elements.size());
  for (const Literal& literal : initializer.elements) {
    elements.push_back(scalarOf(literal, type, resolve));
  }
  return TCIMValue::Array(type, std::move(elements));
}

TCIMValue guessedValueOf(const Initializer& initializer) {
  return valueOf(initializer, guessedType(initializer), initializer.isArray);
}

}  // namespace cmpinsp
