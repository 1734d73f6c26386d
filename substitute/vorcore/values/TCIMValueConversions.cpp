#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <string>

#include "framework/TCIMValue.h"
#include "framework/TVORException.h"
#include "substitute/vorcore/values/ClassDeclaration.h"
#include "substitute/vorcore/values/TypeNames.h"
#include "substitute/vorcore/values/Utf8.h"
#include "substitute/vorcore/values/ValuePayload.h"

namespace NZELVOR20 {
namespace {

/// Longer texts are cut in messages.
constexpr std::size_t kShownLength = 40;

std::string describe(const TCIMValue& value) {
  std::string text = value.IsNull() ? "a null " : "";
  text += vorcore::typeName(value.GetType());
  if (value.IsArray()) return text + " array";
  if (value.IsNull()) return text;
  if (value.GetType() == ECIMType::eReference || value.GetType() == ECIMType::eInstance)
    return text;
  std::string shown = value.ToString(10);
  if (shown.size() > kShownLength) shown = shown.substr(0, kShownLength) + "...";
  return text + " \"" + shown + "\"";
}

[[noreturn]] void throwMismatch(const TCIMValue& value, const char* wanted) {
  throw TVORException(
      TVORStatusCode(eVORTypeMismatch, describe(value) + " cannot be read as " + wanted));
}

template <typename Number>
bool readDigits(const std::string& text, Number& number) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

template <typename Number>
std::string integerText(Number number, int base) {
  std::array<char, 72> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, base);
  return std::string(buffer.data(), result.ptr);
}

template <typename Number>
std::string realText(Number number) {
  std::array<char, 64> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  return std::string(buffer.data(), result.ptr);
}

std::string pathOrNothing(const TCIMReference& reference) {
  return reference.GetClassName().empty() ? std::string() : reference.GetPath();
}

std::string arrayText(const std::vector<TCIMValue>& elements, int base) {
  std::string text = "{";
  for (const TCIMValue& element : elements) {
    if (text.size() > 1 || &element != &elements.front()) text += ',';
    text += element.ToString(base);
  }
  return text + "}";
}

}  // namespace

std::uint16_t TCIMValue::ToUint16() const {
  const std::uint64_t value = ToUint64();
  if (value > std::numeric_limits<std::uint16_t>::max()) throwMismatch(*this, "uint16");
  return static_cast<std::uint16_t>(value);
}

std::uint64_t TCIMValue::ToUint64() const {
  if (!m_isNull && !m_isArray) {
    if (vorcore::isUnsignedType(m_type) || m_type == ECIMType::eBoolean) return m_bits;
    if (vorcore::isSignedType(m_type) && static_cast<std::int64_t>(m_bits) >= 0) return m_bits;
    std::uint64_t value = 0;
    if (m_type == ECIMType::eString && readDigits(GetText(), value)) return value;
  }
  throwMismatch(*this, "an unsigned integer");
}

std::int64_t TCIMValue::ToSint64() const {
  if (!m_isNull && !m_isArray) {
    if (vorcore::isSignedType(m_type)) return static_cast<std::int64_t>(m_bits);
    const bool isUnsigned = vorcore::isUnsignedType(m_type) || m_type == ECIMType::eBoolean;
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    if (isUnsigned && m_bits <= kMost) return static_cast<std::int64_t>(m_bits);
    std::int64_t value = 0;
    if (m_type == ECIMType::eString && readDigits(GetText(), value)) return value;
  }
  throwMismatch(*this, "a signed integer");
}

double TCIMValue::ToReal() const {
  if (!m_isNull && !m_isArray) {
    if (vorcore::isRealType(m_type)) return realOf(m_bits);
    if (vorcore::isUnsignedType(m_type)) return static_cast<double>(m_bits);
    if (vorcore::isSignedType(m_type)) {
      return static_cast<double>(static_cast<std::int64_t>(m_bits));
    }
  }
  throwMismatch(*this, "a real number");
}

bool TCIMValue::ToBoolean() const {
  if (!m_isNull && !m_isArray) {
    if (m_type == ECIMType::eBoolean) return m_bits != 0;
    if (m_type == ECIMType::eString && vorcore::equalNames(GetText(), "true")) return true;
    if (m_type == ECIMType::eString && vorcore::equalNames(GetText(), "false")) return false;
  }
  throwMismatch(*this, "a boolean");
}

std::string TCIMValue::ToText() const { return GetText(); }

const std::string& TCIMValue::GetText() const {
  if (m_isNull || m_isArray || !vorcore::isTextType(m_type)) throwMismatch(*this, "a text");
  return Payload::text(*this).text;
}

TCIMReference TCIMValue::ToReference() const {
  if (m_isNull || m_isArray || m_type != ECIMType::eReference) throwMismatch(*this, "a reference");
  return Payload::reference(*this).reference;
}

std::vector<TCIMValue> TCIMValue::ToArray() const { return GetElements(); }

const std::vector<TCIMValue>& TCIMValue::GetElements() const {
  if (m_isNull || !m_isArray) throwMismatch(*this, "an array");
  return Payload::elements(*this).elements;
}

boost::shared_ptr<ICIMInstance> TCIMValue::ToInstance() const {
  if (m_isNull || m_isArray || m_type != ECIMType::eInstance) throwMismatch(*this, "an instance");
  return Payload::embedded(*this).instance;
}

std::string TCIMValue::ToString(int base) const {
  if (base < 2 || base > 36) {
    throw TVORException(
        TVORStatusCode(eVORInvalidParameter, "number base " + std::to_string(base)));
  }
  if (m_isNull) return std::string();
  if (m_isArray) return arrayText(Payload::elements(*this).elements, base);
  switch (m_type) {
    case ECIMType::eNone:
      return std::string();
    case ECIMType::eBoolean:
      return m_bits != 0 ? "true" : "false";
    case ECIMType::eChar16:
      return vorcore::utf8Of(static_cast<char16_t>(m_bits));
    case ECIMType::eReal32:
      return realText(static_cast<float>(realOf(m_bits)));
    case ECIMType::eReal64:
      return realText(realOf(m_bits));
    case ECIMType::eString:
    case ECIMType::eDateTime:
      return Payload::text(*this).text;
    case ECIMType::eReference:
      return pathOrNothing(Payload::reference(*this).reference);
    case ECIMType::eInstance:
      return pathOrNothing(Payload::embedded(*this).instance->GetObjectPath(TOptionsMap()));
    default:
      return vorcore::isSignedType(m_type) ? integerText(static_cast<std::int64_t>(m_bits), base)
                                           : integerText(m_bits, base);
  }
}

}  // namespace NZELVOR20
