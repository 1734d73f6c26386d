#include "substitute/cmpi.nsp/cache/CodedValue.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "framework/TVORException.h"
#include "substitute/vorcore/values/TypeNames.h"
#include "substitute/vorcore/values/Utf8.h"

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

enum Shape : std::uint8_t { kNull, kScalar, kArray, kNullArray };

std::uint64_t bitsOf(const TCIMValue& value) {
  const ECIMType type = value.GetType();
  if (type == ECIMType::eBoolean) return value.ToBoolean() ? 1 : 0;
  if (vorcore::isUnsignedType(type)) return value.ToUint64();
  if (vorcore::isSignedType(type)) return static_cast<std::uint64_t>(value.ToSint64());
  if (vorcore::isRealType(type)) {
    const double real = value.ToReal();
    std::uint64_t bits = 0;
    std::memcpy(&bits, &real, sizeof bits);
    return bits;
  }
  throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
      NZELVOR20::eVORNotSupported,
      std::string("a declared value of type ") + vorcore::typeName(type)));
}

void writeScalar(ByteWriter& to, const TCIMValue& value) {
  if (vorcore::isTextType(value.GetType())) {
    to.text(value.GetText());
  } else if (value.GetType() == ECIMType::eChar16) {
    to.text(value.ToString(10));
  } else {
    to.u64(bitsOf(value));
  }
}

TCIMValue realOf(ECIMType type, std::uint64_t bits) {
  double real = 0;
  std::memcpy(&real, &bits, sizeof real);
  const double most = std::numeric_limits<float>::max();
  // To turn it into a float would be undefined.
  if (type == ECIMType::eReal32 && std::isfinite(real) && std::fabs(real) > most) {
    throw CacheDamage{"a number does not fit into its type"};
  }
  return TCIMValue::Real(type, real);
}

TCIMValue numberOf(ECIMType type, std::uint64_t bits) {
  if (type == ECIMType::eBoolean && bits <= 1) return TCIMValue::Boolean(bits == 1);
  try {
    if (vorcore::isUnsignedType(type)) return TCIMValue::Unsigned(type, bits);
    if (vorcore::isSignedType(type)) {
      return TCIMValue::Signed(type, static_cast<std::int64_t>(bits));
    }
  } catch (const NZELVOR20::TVORException&) {
    throw CacheDamage{"a number does not fit into its type"};
  }
  if (vorcore::isRealType(type)) return realOf(type, bits);
  throw CacheDamage{"a value of a type that no declaration has"};
}

TCIMValue characterOf(const std::string& text) {
  char16_t unit = 0;
  if (!vorcore::singleUnitOf(text, unit)) throw CacheDamage{"a character that is none"};
  return TCIMValue::Char16(unit);
}

TCIMValue readScalar(ByteReader& from, ECIMType type) {
  if (type == ECIMType::eString) return TCIMValue(std::string(from.text()));
  if (type == ECIMType::eDateTime) return TCIMValue::DateTime(std::string(from.text()));
  if (type == ECIMType::eChar16) return characterOf(std::string(from.text()));
  return numberOf(type, from.u64());
}

}  // namespace

ECIMType readType(ByteReader& from) {
  return static_cast<ECIMType>(from.upTo(static_cast<std::uint8_t>(ECIMType::eInstance)));
}

ECIMType readDeclaredType(ByteReader& from) {
  const ECIMType type = readType(from);
  if (type == ECIMType::eNone) throw CacheDamage{"a declaration without a type"};
  return type;
}

void writeValue(ByteWriter& to, const TCIMValue& value) {
  writeType(to, value.GetType());
  if (value.IsNull()) return to.u8(value.IsArray() ? kNullArray : kNull);
  to.u8(value.IsArray() ? kArray : kScalar);
  if (!value.IsArray()) return writeScalar(to, value);
  const std::vector<TCIMValue>& elements = value.GetElements();
  to.count(elements.size());
  for (const TCIMValue& element : elements) {
    to.u8(element.IsNull() ? kNull : kScalar);
    if (!element.IsNull()) writeScalar(to, element);
  }
}

TCIMValue readValue(ByteReader& from) {
  const ECIMType type = readType(from);
  const std::uint8_t shape = from.upTo(kNullArray);
  if (shape == kNull || shape == kNullArray) return TCIMValue::Null(type, shape == kNullArray);
  if (shape == kScalar) return readScalar(from, type);
  std::vector<TCIMValue> elements;
  const std::size_t count = from.count(1);
  for (std::size_t i = 0; i < count; ++i) {
    const bool isNull = from.upTo(kScalar) == kNull;
    elements.push_back(isNull ? TCIMValue::Null(type) : readScalar(from, type));
  }
  return TCIMValue::Array(type, std::move(elements));
}

TCIMValue readDefault(ByteReader& from, ECIMType type, bool isArray) {
  TCIMValue value = readValue(from);
  if (value.GetType() != type || value.IsArray() != isArray) {
    throw CacheDamage{"a default that does not fit its declaration"};
  }
  return value;
}

}  // namespace cmpinsp
