#include "framework/TInmemInstance.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <map>
#include <utility>

#include "framework/ICIMClass.h"
#include "framework/ICIMNamespace.h"
#include "framework/TVORException.h"
#include "substitute/vorcore/inmem/ClassImport.h"
#include "substitute/vorcore/inmem/DeclaredClass.h"
#include "substitute/vorcore/inmem/InmemProperty.h"

namespace NZELVOR20 {
namespace {

boost::shared_ptr<ICIMNamespace> namespaceOf(ICIMClass& instanceClass) {
  try {
    return instanceClass.GetNamespace(TOptionsMap());
  } catch (const TVORException&) {
    return boost::shared_ptr<ICIMNamespace>();
  }
}

}  // namespace

TInmemInstance::TInmemInstance(boost::shared_ptr<ICIMClass> instanceClass)
    : m_class(std::move(instanceClass)) {
  if (!m_class) {
    throw TVORException(TVORStatusCode(eVORInvalidParameter, "an instance without a class"));
  }
  m_declaration = vorcore::declarationOf(*m_class);
  const auto& properties = m_declaration->properties;
  m_values = boost::make_shared<TCIMValue[]>(properties.size());
  for (std::size_t position = 0; position < properties.size(); ++position) {
    const vorcore::PropertyDeclaration& property = properties[position];
    m_values.get()[position] = property.defaultValue.IsNull()
                                   ? TCIMValue::Null(property.type, property.isArray)
                                   : property.defaultValue;
  }
}

TInmemInstance::~TInmemInstance() = default;

std::size_t TInmemInstance::FindProperty(const std::string& name) const {
  const std::size_t position = m_declaration->findProperty(name);
  if (position == vorcore::ClassDeclaration::kNoProperty) {
    throw TVORException(
        TVORStatusCode(eVORNoSuchProperty, name + " of class " + m_declaration->name));
  }
  return position;
}

void TInmemInstance::DetachValues() {
  if (m_values.use_count() == 1) return;
  const std::size_t count = m_declaration->properties.size();
  const boost::shared_ptr<TCIMValue[]> values = boost::make_shared<TCIMValue[]>(count);
  std::copy(m_values.get(), m_values.get() + count, values.get());
  m_values = values;
}

TCIMReference TInmemInstance::GetObjectPath(TOptionsMap) {
  std::map<std::string, TCIMValue> keys;
  for (std::size_t position = 0; position < m_declaration->properties.size(); ++position) {
    const vorcore::PropertyDeclaration& property = m_declaration->properties[position];
    if (property.isKey) keys.emplace(property.name, m_values.get()[position]);
  }
  const auto* const declared = dynamic_cast<const vorcore::IDeclaredClass*>(m_class.get());
  return TCIMReference(namespaceOf(*m_class),
                       declared != nullptr ? declared->GetNamespaceName() : std::string(),
                       m_declaration->name, std::move(keys));
}

boost::shared_ptr<ICIMProperty> TInmemInstance::GetProperty(std::string name, TOptionsMap) {
  const std::size_t position = FindProperty(name);
  return boost::make_shared<vorcore::InmemProperty>(m_declaration, position,
                                                    m_values.get()[position]);
}

void TInmemInstance::SetProperty(std::string name, TCIMValue value, TOptionsMap) {
  const std::size_t position = FindProperty(name);
  const vorcore::PropertyDeclaration& property = m_declaration->properties[position];
  TCIMValue converted = vorcore::convertTo(value, property.type, property.isArray);
  DetachValues();
  m_values.get()[position] = std::move(converted);
}

boost::shared_ptr<ICIMClass> TInmemInstance::GetClass(TOptionsMap) { return m_class; }

void TInmemInstance::EnumerateProperties(TPropertyCallback callback, TOptionsMap) {
  // Held here, so that a callback which sets a property does not change what is being walked.
  const boost::shared_ptr<TCIMValue[]> values = m_values;
  for (std::size_t position = 0; position < m_declaration->properties.size(); ++position) {
    if (!callback(boost::make_shared<vorcore::InmemProperty>(m_declaration, position,
                                                             values.get()[position]))) {
      return;
    }
  }
}

}  // namespace NZELVOR20
