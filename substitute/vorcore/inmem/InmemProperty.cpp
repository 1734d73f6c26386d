#include "substitute/vorcore/inmem/InmemProperty.h"

#include <utility>

namespace vorcore {

using NZELVOR20::TCIMValue;

InmemProperty::InmemProperty(ClassDeclarationPtr declaration, std::size_t position, TCIMValue value)
    : m_declaration(std::move(declaration)), m_position(position), m_value(std::move(value)) {}

TCIMValue InmemProperty::GetQualifier(std::string name, NZELVOR20::TOptionsMap) {
  if (declared().isKey && equalNames(name, "Key")) return TCIMValue::Boolean(true);
  const TCIMValue* const found = findQualifier(declared().qualifiers, name);
  return found != nullptr ? *found : TCIMValue();
}

}  // namespace vorcore
