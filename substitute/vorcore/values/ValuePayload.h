#pragma once

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "framework/ICIMInstance.h"
#include "framework/TCIMReference.h"
#include "framework/TCIMValue.h"

namespace NZELVOR20 {

/// The real number that a value keeps as its bits.
inline double realOf(std::uint64_t bits) noexcept {
  double value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

/// What stands behind a value that does not fit into its 64 bits. It counts the values that share
/// it, and its kind tells what it is derived to.
struct TCIMValue::Payload {
  enum class Kind : unsigned char { eText, eReference, eEmbedded, eElements };

  explicit Payload(Kind aKind) noexcept : kind(aKind) {}
  Payload(const Payload&) = delete;
  Payload& operator=(const Payload&) = delete;

  mutable std::atomic<std::uint32_t> users{0};
  const Kind kind;

  struct Text;
  struct Reference;
  struct Embedded;
  struct Elements;

  static const Text& text(const TCIMValue& value) noexcept;
  static const Reference& reference(const TCIMValue& value) noexcept;
  static const Embedded& embedded(const TCIMValue& value) noexcept;
  static const Elements& elements(const TCIMValue& value) noexcept;
};

struct TCIMValue::Payload::Text : Payload {
  explicit Text(std::string aText) : Payload(Kind::eText), text(std::move(aText)) {}
  std::string text;
};

struct TCIMValue::Payload::Reference : Payload {
  explicit Reference(const TCIMReference& aReference)
      : Payload(Kind::eReference), reference(aReference) {}
  TCIMReference reference;
};

struct TCIMValue::Payload::Embedded : Payload {
  explicit Embedded(boost::shared_ptr<ICIMInstance> anInstance)
      : Payload(Kind::eEmbedded), instance(std::move(anInstance)) {}
  boost::shared_ptr<ICIMInstance> instance;
};

struct TCIMValue::Payload::Elements : Payload {
  explicit Elements(std::vector<TCIMValue> theElements)
      : Payload(Kind::eElements), elements(std::move(theElements)) {}
  std::vector<TCIMValue> elements;
};

inline const TCIMValue::Payload::Text& TCIMValue::Payload::text(const TCIMValue& value) noexcept {
  return static_cast<const Text&>(*value.m_payload);
}

inline const TCIMValue::Payload::Reference& TCIMValue::Payload::reference(
    const TCIMValue& value) noexcept {
  return static_cast<const Reference&>(*value.m_payload);
}

inline const TCIMValue::Payload::Embedded& TCIMValue::Payload::embedded(
    const TCIMValue& value) noexcept {
  return static_cast<const Embedded&>(*value.m_payload);
}

inline const TCIMValue::Payload::Elements& TCIMValue::Payload::elements(
    const TCIMValue& value) noexcept {
  return static_cast<const Elements&>(*value.m_payload);
}

}  // namespace NZELVOR20
