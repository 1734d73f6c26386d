#include "substitute/cmpi.nsp/manager/face/CmpiProperty.h"

namespace cmpinsp {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;
using NZELVOR20::TOptionsMap;

namespace {

TCIMValue qualifierOf(const vorcore::PropertyDeclaration* declaration, const std::string& name) {
  if (declaration == nullptr) return TCIMValue();
  const TCIMValue* value = vorcore::findQualifier(declaration->qualifiers, name);
  return value != nullptr ? *value : TCIMValue();
}

}  // namespace

const vorcore::PropertyDeclaration* CmpiProperty::declaration() const noexcept {
  if (m_position >= m_data->values.size()) return nullptr;
  return &m_data->declaration->properties[m_position];
}

const TCIMValue& CmpiProperty::value() const noexcept {
  const std::size_t declared = m_data->values.size();
  return m_position < declared ? m_data->values[m_position]
                               : m_data->extras[m_position - declared].second;
}

std::string CmpiProperty::GetName() const {
  const vorcore::PropertyDeclaration* declared = declaration();
  return declared != nullptr ? declared->name
                             : m_data->extras[m_position - m_data->values.size()].first;
}

TCIMValue CmpiProperty::GetValue(TOptionsMap) { return value(); }

std::string CmpiProperty::ToString() {
  const vorcore::PropertyDeclaration* declared = declaration();
  return declared != nullptr ? vorcore::renderValue(value(), declared->qualifiers)
                             : value().ToString(10);
}

ECIMType CmpiProperty::GetType() const {
  const vorcore::PropertyDeclaration* declared = declaration();
  // An embedded object may have come as text.
  return declared != nullptr && value().IsNull() ? declared->type : value().GetType();
}

bool CmpiProperty::IsArray() const {
  const vorcore::PropertyDeclaration* declared = declaration();
  return declared != nullptr ? declared->isArray : value().IsArray();
}

TCIMValue CmpiProperty::GetQualifier(std::string name, TOptionsMap) {
  return qualifierOf(declaration(), name);
}

TCIMValue CmpiPropertyDeclaration::GetValue(TOptionsMap) { return declaration().defaultValue; }

std::string CmpiPropertyDeclaration::ToString() {
  return vorcore::renderValue(declaration().defaultValue, declaration().qualifiers);
}

TCIMValue CmpiPropertyDeclaration::GetQualifier(std::string name, TOptionsMap) {
  return qualifierOf(&declaration(), name);
}

}  // namespace cmpinsp
