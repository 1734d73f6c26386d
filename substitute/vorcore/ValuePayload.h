#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "framework/ICIMInstance.h"
#include "framework/TCIMReference.h"
#include "framework/TCIMValue.h"

namespace NZELVOR20 {

/// What stands behind a value that does not fit into its 64 bits. The value's type tells which of
/// the derived payloads it is, so no type information is kept here.
struct TCIMValue::Payload {
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
  explicit Text(std::string aText) : text(std::move(aText)) {}
  std::string text;
};

struct TCIMValue::Payload::Reference : Payload {
  explicit Reference(const TCIMReference& aReference) : reference(aReference) {}
  TCIMReference reference;
};

struct TCIMValue::Payload::Embedded : Payload {
  explicit Embedded(boost::shared_ptr<ICIMInstance> anInstance) : instance(std::move(anInstance)) {}
  boost::shared_ptr<ICIMInstance> instance;
};

struct TCIMValue::Payload::Elements : Payload {
  explicit Elements(std::vector<TCIMValue> theElements) : elements(std::move(theElements)) {}
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
