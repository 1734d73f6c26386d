#pragma once

#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "framework/ECIMType.h"
#include "framework/Export.h"

namespace NZELVOR20 {

class ICIMInstance;
class TCIMReference;

/// A typed CIM value: a scalar, an array of scalars of one type, or null.
///
/// Values are small (24 bytes) and copy cheaply: texts, references, instances and arrays are
/// shared, immutable payloads. One value may be read from several threads; assigning to it needs
/// the caller's own lock.
class VORCORE_API TCIMValue {
 public:
  /// Null, of no type.
  TCIMValue() noexcept;
  /// A string; a null pointer gives a null string.
  TCIMValue(const char* text);
  /// A string.
  TCIMValue(std::string text);
  /// A reference.
  TCIMValue(const TCIMReference& reference);
  TCIMValue(const TCIMValue& other) noexcept = default;
  /// Leaves `other` null.
  TCIMValue(TCIMValue&& other) noexcept;
  TCIMValue& operator=(const TCIMValue& other) noexcept = default;
  /// Leaves `other` null.
  TCIMValue& operator=(TCIMValue&& other) noexcept;
  ~TCIMValue() = default;

  /// The null value of `type`.
  static TCIMValue Null(ECIMType type, bool isArray = false) noexcept;
  static TCIMValue Boolean(bool value) noexcept;
  /// One UTF-16 code unit.
  static TCIMValue Char16(std::uint16_t unit) noexcept;
  /// An integer of `type` (eUint8 to eUint64); what does not fit throws (type mismatch).
  static TCIMValue Unsigned(ECIMType type, std::uint64_t value);
  /// An integer of `type` (eSint8 to eSint64); what does not fit throws (type mismatch).
  static TCIMValue Signed(ECIMType type, std::int64_t value);
  /// A real of `type` (eReal32 or eReal64).
  static TCIMValue Real(ECIMType type, double value);
  static TCIMValue Uint16(std::uint16_t value) noexcept;
  static TCIMValue Uint32(std::uint32_t value) noexcept;
  static TCIMValue Uint64(std::uint64_t value) noexcept;
  /// A date and time or an interval, in the 25 characters of DSP0004, 5.2.4; the text is kept.
  static TCIMValue DateTime(std::string text);
  /// An embedded instance; an empty handle gives null.
  static TCIMValue Instance(boost::shared_ptr<ICIMInstance> instance);
  /// An array; every element is of `elementType` or null.
  static TCIMValue Array(ECIMType elementType, std::vector<TCIMValue> elements);

  /// Same type and same value; two nulls of one type are equal. References compare by their path,
  /// embedded instances by identity.
  bool operator==(const TCIMValue& other) const;
  bool operator!=(const TCIMValue& other) const { return !(*this == other); }

  bool IsNull() const noexcept { return m_isNull; }
  bool IsArray() const noexcept { return m_isArray; }
  /// The scalar's type, or the type of an array's elements.
  ECIMType GetType() const noexcept { return m_type; }

  /// The number as 16 bits. Any integer type that fits, a boolean, or a string of decimal digits;
  /// everything else, null included, throws `TVORException` (type mismatch).
  std::uint16_t ToUint16() const;
  std::uint64_t ToUint64() const;
  std::int64_t ToSint64() const;
  /// Any number as a double; else throws (type mismatch).
  double ToReal() const;
  bool ToBoolean() const;
  /// The text of a string or date-time; else throws (type mismatch).
  std::string ToText() const;
  /// The reference; else throws (type mismatch).
  TCIMReference ToReference() const;
  /// The elements; a value that is no array, or null, throws (type mismatch).
  std::vector<TCIMValue> ToArray() const;
  /// As `ToText` and `ToArray`, without a copy: valid until the value is assigned to or destroyed.
  const std::string& GetText() const;
  const std::vector<TCIMValue>& GetElements() const;
  /// The embedded instance; else throws (type mismatch).
  boost::shared_ptr<ICIMInstance> ToInstance() const;

  /// The value for display: integers in `base` (2 to 36), booleans as "true" and "false", a
  /// reference as its path, an array as its elements between braces, joined with ",", null as the
  /// empty text.
  std::string ToString(int base) const;

 private:
  struct Payload;
  friend VORCORE_API void intrusive_ptr_add_ref(const Payload* payload) noexcept;
  friend VORCORE_API void intrusive_ptr_release(const Payload* payload) noexcept;

  TCIMValue(ECIMType type, bool isNull, bool isArray, std::uint64_t bits = 0) noexcept
      : m_type(type), m_isNull(isNull), m_isArray(isArray), m_bits(bits) {}
  TCIMValue(ECIMType type, bool isArray, boost::intrusive_ptr<const Payload> payload) noexcept;
  TCIMValue(ECIMType type, bool isArray, Payload* payload) = delete;  // else taken for a flag

  ECIMType m_type;
  bool m_isNull;
  bool m_isArray;
  std::uint64_t m_bits;  ///< a scalar number: two's complement, or the bits of a double
  /// What does not fit above; set for every value of such a type that is not null.
  boost::intrusive_ptr<const Payload> m_payload;
};

inline TCIMValue::TCIMValue() noexcept : TCIMValue(ECIMType::eNone, true, false) {}

inline TCIMValue::TCIMValue(TCIMValue&& other) noexcept
    : m_type(other.m_type),
      m_isNull(other.m_isNull),
      m_isArray(other.m_isArray),
      m_bits(other.m_bits),
      m_payload(std::move(other.m_payload)) {
  other.m_isNull = true;
}

inline TCIMValue& TCIMValue::operator=(TCIMValue&& other) noexcept {
  if (this != &other) {
    m_type = other.m_type;
    m_isNull = other.m_isNull;
    m_isArray = other.m_isArray;
    m_bits = other.m_bits;
    m_payload = std::move(other.m_payload);
    other.m_isNull = true;
  }
  return *this;
}

}  // namespace NZELVOR20
