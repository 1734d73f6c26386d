#include "framework/TCIMValue.h"

#include <cstring>
#include <limits>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/vorcore/values/TypeNames.h"
#include "substitute/vorcore/values/ValuePayload.h"

namespace NZELVOR20 {
namespace {

int widthOf(ECIMType type) {
  switch (type) {
    case ECIMType::eUint8:
    case ECIMType::eSint8:
      return 8;
    case ECIMType::eUint16:
    case ECIMType::eSint16:
      return 16;
    case ECIMType::eUint32:
    case ECIMType::eSint32:
      return 32;
    default:
      return 64;
  }
}

[[noreturn]] void throwMismatch(const std::string& detail) {
  throw TVORException(TVORStatusCode(eVORTypeMismatch, detail));
}

[[noreturn]] void throwDoesNotFit(const std::string& number, ECIMType type) {
  throwMismatch(number + " does not fit into " + vorcore::typeName(type));
}

bool samePath(const TCIMReference& left, const TCIMReference& right) {
  if (left.GetBody() == right.GetBody()) return true;
  const bool leftIsEmpty = left.GetClassName().empty();
  const bool rightIsEmpty = right.GetClassName().empty();
  if (leftIsEmpty || rightIsEmpty) return leftIsEmpty && rightIsEmpty;
  return left.GetPath() == right.GetPath();
}

}  // namespace

void intrusive_ptr_add_ref(const TCIMValue::Payload* payload) noexcept {
  payload->users.fetch_add(1, std::memory_order_relaxed);
}

void intrusive_ptr_release(const TCIMValue::Payload* payload) noexcept {
  using Payload = TCIMValue::Payload;
  if (payload->users.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  switch (payload->kind) {
    case Payload::Kind::eText:
      delete static_cast<const Payload::Text*>(payload);
      break;
    case Payload::Kind::eReference:
      delete static_cast<const Payload::Reference*>(payload);
      break;
    case Payload::Kind::eEmbedded:
      delete static_cast<const Payload::Embedded*>(payload);
      break;
    case Payload::Kind::eElements:
      delete static_cast<const Payload::Elements*>(payload);
      break;
  }
}

TCIMValue::TCIMValue(ECIMType type, bool isArray,
                     boost::intrusive_ptr<const Payload> payload) noexcept
    : m_type(type),
      m_isNull(!payload),
      m_isArray(isArray),
      m_bits(0),
      m_payload(std::move(payload)) {}

TCIMValue::TCIMValue(const char* text) : TCIMValue(ECIMType::eString, true, false) {
  if (text != nullptr) *this = TCIMValue(std::string(text));
}

TCIMValue::TCIMValue(std::string text)
    : TCIMValue(ECIMType::eString, false,
                boost::intrusive_ptr<const Payload>(new Payload::Text(std::move(text)))) {}

TCIMValue::TCIMValue(const TCIMReference& reference)
    : TCIMValue(ECIMType::eReference, false,
                boost::intrusive_ptr<const Payload>(new Payload::Reference(reference))) {}

TCIMValue TCIMValue::Null(ECIMType type, bool isArray) noexcept {
  return TCIMValue(type, true, isArray);
}

TCIMValue TCIMValue::Boolean(bool value) noexcept {
  return TCIMValue(ECIMType::eBoolean, false, false, value ? 1U : 0U);
}

TCIMValue TCIMValue::Char16(std::uint16_t unit) noexcept {
  return TCIMValue(ECIMType::eChar16, false, false, unit);
}

TCIMValue TCIMValue::Unsigned(ECIMType type, std::uint64_t value) {
  if (!vorcore::isUnsignedType(type)) {
    throwMismatch(std::string(vorcore::typeName(type)) + " is no unsigned integer type");
  }
  const int width = widthOf(type);
  if (width < 64 && (value >> width) != 0) throwDoesNotFit(std::to_string(value), type);
  return TCIMValue(type, false, false, value);
}

TCIMValue TCIMValue::Signed(ECIMType type, std::int64_t value) {
  if (!vorcore::isSignedType(type)) {
    throwMismatch(std::string(vorcore::typeName(type)) + " is no signed integer type");
  }
  const std::int64_t most = std::numeric_limits<std::int64_t>::max() >> (64 - widthOf(type));
  if (value > most || value < -most - 1) throwDoesNotFit(std::to_string(value), type);
  return TCIMValue(type, false, false, static_cast<std::uint64_t>(value));
}

TCIMValue TCIMValue::Real(ECIMType type, double value) {
  if (!vorcore::isRealType(type)) {
    throwMismatch(std::string(vorcore::typeName(type)) + " is no real type");
  }
  if (type == ECIMType::eReal32) value = static_cast<double>(static_cast<float>(value));
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return TCIMValue(type, false, false, bits);
}

TCIMValue TCIMValue::Uint16(std::uint16_t value) noexcept {
  return TCIMValue(ECIMType::eUint16, false, false, value);
}

TCIMValue TCIMValue::Uint32(std::uint32_t value) noexcept {
  return TCIMValue(ECIMType::eUint32, false, false, value);
}

TCIMValue TCIMValue::Uint64(std::uint64_t value) noexcept {
  return TCIMValue(ECIMType::eUint64, false, false, value);
}

TCIMValue TCIMValue::DateTime(std::string text) {
  return TCIMValue(ECIMType::eDateTime, false,
                   boost::intrusive_ptr<const Payload>(new Payload::Text(std::move(text))));
}

TCIMValue TCIMValue::Instance(boost::shared_ptr<ICIMInstance> instance) {
  if (!instance) return Null(ECIMType::eInstance);
  return TCIMValue(ECIMType::eInstance, false,
                   boost::intrusive_ptr<const Payload>(new Payload::Embedded(std::move(instance))));
}

TCIMValue TCIMValue::Array(ECIMType elementType, std::vector<TCIMValue> elements) {
  for (const TCIMValue& element : elements) {
    const bool fits = !element.IsArray() && (element.IsNull() || element.GetType() == elementType);
    if (!fits) {
      throwMismatch(std::string("an array of ") + vorcore::typeName(elementType) + " cannot hold " +
                    (element.IsArray() ? "an array" : vorcore::typeName(element.GetType())));
    }
  }
  return TCIMValue(elementType, true,
                   boost::intrusive_ptr<const Payload>(new Payload::Elements(std::move(elements))));
}

bool TCIMValue::operator==(const TCIMValue& other) const {
  if (m_type != other.m_type || m_isArray != other.m_isArray || m_isNull != other.m_isNull) {
    return false;
  }
  if (m_isNull) return true;
  if (m_payload && m_payload == other.m_payload && !m_isArray) return true;
  if (m_isArray) return Payload::elements(*this).elements == Payload::elements(other).elements;
  switch (m_type) {
    case ECIMType::eString:
    case ECIMType::eDateTime:
      return Payload::text(*this).text == Payload::text(other).text;
    case ECIMType::eReference:
      return samePath(Payload::reference(*this).reference, Payload::reference(other).reference);
    case ECIMType::eInstance:
      return Payload::embedded(*this).instance == Payload::embedded(other).instance;
    case ECIMType::eReal32:
    case ECIMType::eReal64:
      return realOf(m_bits) == realOf(other.m_bits);
    default:
      return m_bits == other.m_bits;
  }
}

}  // namespace NZELVOR20
