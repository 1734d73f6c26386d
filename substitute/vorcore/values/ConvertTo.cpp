#include <charconv>
#include <cmath>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/vorcore/values/ClassDeclaration.h"
#include "substitute/vorcore/values/TypeNames.h"
#include "substitute/vorcore/values/Utf8.h"

namespace vorcore {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

[[noreturn]] void throwMismatch(const TCIMValue& value, ECIMType type, bool isArray) {
  std::string detail = typeName(value.GetType());
  detail += value.IsArray() ? " array" : " \"" + value.ToString(10) + "\"";
  detail += " does not convert to ";
  detail += typeName(type);
  if (isArray) detail += " array";
  throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(NZELVOR20::eVORTypeMismatch, detail));
}

/// The integer of the type of `real`; a fraction, or what does not fit, does not convert.
TCIMValue integerFromReal(const TCIMValue& value, ECIMType type) {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  const double real = value.ToReal();
  if (std::trunc(real) != real) throwMismatch(value, type, false);
  if (isSignedType(type) && real >= -kTwoTo63 && real < kTwoTo63) {
    return TCIMValue::Signed(type, static_cast<std::int64_t>(real));
  }
  if (isUnsignedType(type) && real >= 0 && real < 2 * kTwoTo63) {
    return TCIMValue::Unsigned(type, static_cast<std::uint64_t>(real));
  }
  throwMismatch(value, type, false);
}

TCIMValue realFromText(const TCIMValue& value, ECIMType type) {
  const std::string& text = value.GetText();
  const char* end = text.data() + text.size();
  double real = 0;
  const auto result = std::from_chars(text.data(), end, real);
  if (result.ec != std::errc() || result.ptr != end) throwMismatch(value, type, false);
  return TCIMValue::Real(type, real);
}

/// The real of the same value; an integer that a double has to round does not convert.
TCIMValue realFrom(const TCIMValue& value, ECIMType type) {
  if (value.GetType() == ECIMType::eString) return realFromText(value, type);
  const TCIMValue converted = TCIMValue::Real(type, value.ToReal());
  if (isRealType(value.GetType())) return converted;
  const TCIMValue back = integerFromReal(converted, value.GetType());
  if (back != value) throwMismatch(value, type, false);
  return converted;
}

TCIMValue char16From(const TCIMValue& value) {
  char16_t unit = 0;
  if (value.GetType() == ECIMType::eString) {
    if (!singleUnitOf(value.GetText(), unit)) throwMismatch(value, ECIMType::eChar16, false);
    return TCIMValue::Char16(unit);
  }
  return TCIMValue::Char16(value.ToUint16());
}

TCIMValue scalarTo(const TCIMValue& value, ECIMType type) {
  const ECIMType from = value.GetType();
  if (isUnsignedType(type) || isSignedType(type)) {
    if (isRealType(from)) return integerFromReal(value, type);
    if (isUnsignedType(type)) return TCIMValue::Unsigned(type, value.ToUint64());
    return TCIMValue::Signed(type, value.ToSint64());
  }
  if (isRealType(type)) return realFrom(value, type);
  if (type == ECIMType::eBoolean) return TCIMValue::Boolean(value.ToBoolean());
  if (type == ECIMType::eChar16) return char16From(value);
  if (type == ECIMType::eDateTime && from == ECIMType::eString) {
    return TCIMValue::DateTime(value.GetText());
  }
  const bool readsAsText = from == ECIMType::eDateTime || from == ECIMType::eChar16;
  if (type == ECIMType::eString && readsAsText) return TCIMValue(value.ToString(10));
  throwMismatch(value, type, false);
}

}  // namespace

TCIMValue convertTo(const TCIMValue& value, ECIMType type, bool isArray) {
  if (value.IsNull()) return TCIMValue::Null(type, isArray);
  if (type == ECIMType::eNone) return value;
  if (value.IsArray() != isArray) throwMismatch(value, type, isArray);
  if (value.GetType() == type) return value;
  if (!isArray) return scalarTo(value, type);
  std::vector<TCIMValue> elements;
  elements.reserve(value.GetElements().size());
  for (const TCIMValue& element : value.GetElements()) {
    elements.push_back(convertTo(element, type, false));
  }
  return TCIMValue::Array(type, std::move(elements));
}

}  // namespace vorcore
