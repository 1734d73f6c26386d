#include "substitute/cmpi.nsp/model/ClassShape.h"

#include <utility>

namespace cmpinsp::broker {

using NZELVOR20::TCIMValue;

ClassShape::ClassShape(vorcore::ClassDeclarationPtr declaration)
    : m_declaration(std::move(declaration)) {
  m_nulls.reserve(m_declaration->properties.size());
  for (const vorcore::PropertyDeclaration& property : m_declaration->properties) {
    m_nulls.push_back(TCIMValue::Null(property.type, property.isArray));
    if (property.isKey) ++m_keyCount;
  }
}

}  // namespace cmpinsp::broker
