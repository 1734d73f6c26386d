#include "substitute/cmpi.nsp/model/ClassShape.h"

#include <algorithm>
#include <utility>

namespace cmpinsp::broker {

using NZELVOR20::TCIMValue;

ClassShape::ClassShape(vorcore::ClassDeclarationPtr declaration)
    : m_declaration(std::move(declaration)) {
  m_nulls.reserve(m_declaration->properties.size());
  for (const vorcore::PropertyDeclaration& property : m_declaration->properties) {
    if (property.isKey) m_keys.push_back(m_nulls.size());
    m_nulls.push_back(TCIMValue::Null(property.type, property.isArray));
  }
}

const std::string* ClassShape::declaredKey(const std::string& name) const {
  for (const std::size_t position : m_keys) {
    const std::string& declared = m_declaration->properties[position].name;
    if (declared == name || vorcore::equalNames(declared, name)) return &declared;
  }
  return nullptr;
}

bool ClassShape::spellsKeysOf(const ObjectPath& path) const {
  return std::all_of(path.keys.begin(), path.keys.end(), [this](const auto& key) {
    const std::string* declared = declaredKey(key.first);
    return declared == nullptr || *declared == key.first;
  });
}

void ClassShape::spellKeysOf(ObjectPath& path) const {
  for (auto& key : path.keys) {
    if (const std::string* declared = declaredKey(key.first)) key.first = *declared;
  }
}

}  // namespace cmpinsp::broker
