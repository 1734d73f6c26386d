#include "substitute/cmpi.nsp/manager/face/CmpiClass.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/face/CmpiInstance.h"
#include "substitute/cmpi.nsp/manager/face/CmpiNamespace.h"
#include "substitute/cmpi.nsp/manager/face/CmpiProperty.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {

using namespace NZELVOR20;

boost::shared_ptr<CmpiNamespace> CmpiClass::requireNamespace() const {
  boost::shared_ptr<CmpiNamespace> ns = m_namespace.lock();
  if (ns) return ns;
  throw TVORException(TVORStatusCode(eVORInvalidNamespace,
                                     "the namespace of class " + m_declaration->name + " is gone"));
}

boost::shared_ptr<ICIMNamespace> CmpiClass::GetNamespace(TOptionsMap) { return m_namespace.lock(); }

void CmpiClass::EnumerateInstances(TInstanceCallback callback, bool deep, TOptionsMap) {
  const boost::shared_ptr<CmpiNamespace> ns = requireNamespace();
  ns->manager().enumerate({std::string(), m_declaration->name, {}}, deep, nullptr,
                          [&](const InstanceDataPtr& data) { return callback(ns->handOut(data)); });
}

void CmpiClass::EnumerateInstanceNames(TReferenceCallback callback, bool deep, TOptionsMap) {
  const boost::shared_ptr<CmpiNamespace> ns = requireNamespace();
  const boost::shared_ptr<ICIMNamespace> handle = ns->manager().namespaceHandle();
  ns->manager().enumerateNames(
      {std::string(), m_declaration->name, {}}, deep,
      [&](const ObjectPath& path) { return callback(referenceTo(path, handle)); });
}

boost::shared_ptr<ICIMClass> CmpiClass::GetSuperclass(TOptionsMap options) {
  const boost::shared_ptr<CmpiNamespace> ns = requireNamespace();
  const bool isTop =
      m_declaration->superclass.empty() ||
      (m_declaration->isOpen && !ns->manager().classes().knows(m_declaration->superclass));
  if (isTop) return boost::shared_ptr<ICIMClass>();
  return ns->GetClass(m_declaration->superclass, std::move(options));
}

void CmpiClass::EnumerateSubclasses(TClassCallback callback, bool deep, TOptionsMap options) {
  const boost::shared_ptr<CmpiNamespace> ns = requireNamespace();
  for (const std::string& name : ns->manager().classes().subclasses(m_declaration->name, deep)) {
    if (!callback(ns->GetClass(name, options))) return;
  }
}

void CmpiClass::EnumerateProperties(TPropertyCallback callback, TOptionsMap) {
  for (std::size_t at = 0; at < m_declaration->properties.size(); ++at) {
    if (!callback(boost::make_shared<CmpiPropertyDeclaration>(m_declaration, at))) return;
  }
}

TCIMValue CmpiClass::GetQualifier(std::string name, TOptionsMap) {
  const TCIMValue* value = vorcore::findQualifier(m_declaration->qualifiers, name);
  return value != nullptr ? *value : TCIMValue();
}

boost::shared_ptr<ICIMInstance> CmpiClass::AllocateInstance(TOptionsMap) {
  InstanceDataPtr data = boost::make_shared<InstanceData>();
  data->declaration = m_declaration;
  data->path.nameSpace = kDefaultNamespace;
  data->path.className = m_declaration->name;
  data->values.reserve(m_declaration->properties.size());
  for (const vorcore::PropertyDeclaration& property : m_declaration->properties) {
    data->values.push_back(property.defaultValue);
  }
  return boost::make_shared<CmpiInstance>(data, m_namespace);
}

}  // namespace cmpinsp
