#include "substitute/vorcore/inmem/InmemClass.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "framework/ICIMNamespace.h"
#include "framework/TInmemInstance.h"
#include "framework/TVORException.h"
#include "substitute/vorcore/inmem/InmemProperty.h"
#include "substitute/vorcore/inmem/InmemStore.h"

namespace vorcore {

using namespace NZELVOR20;

InmemClass::InmemClass(ClassDeclarationPtr declaration, std::string namespaceName,
                       boost::weak_ptr<ICIMNamespace> ns, boost::weak_ptr<InmemStore> store)
    : m_declaration(std::move(declaration)),
      m_namespaceName(std::move(namespaceName)),
      m_namespace(std::move(ns)),
      m_store(std::move(store)) {}

boost::shared_ptr<InmemStore> InmemClass::store() const {
  boost::shared_ptr<InmemStore> locked = m_store.lock();
  if (!locked) {
    throw TVORException(
        TVORStatusCode(eVORInvalidNamespace, "the namespace of class " + GetName() + " is gone"));
  }
  return locked;
}

boost::shared_ptr<ICIMNamespace> InmemClass::GetNamespace(TOptionsMap) {
  return m_namespace.lock();
}

void InmemClass::EnumerateInstances(TInstanceCallback callback, bool deep, TOptionsMap) {
  for (const InmemStore::InstancePtr& stored : store()->instances(GetName(), deep)) {
    if (!callback(boost::make_shared<TInmemInstance>(*stored))) return;
  }
}

void InmemClass::EnumerateInstanceNames(TReferenceCallback callback, bool deep,
                                        TOptionsMap options) {
  for (const InmemStore::InstancePtr& stored : store()->instances(GetName(), deep)) {
    if (!callback(TInmemInstance(*stored).GetObjectPath(options))) return;
  }
}

boost::shared_ptr<ICIMClass> InmemClass::GetSuperclass(TOptionsMap) {
  if (m_declaration->superclass.empty()) return boost::shared_ptr<ICIMClass>();
  return store()->findClass(m_declaration->superclass);
}

void InmemClass::EnumerateSubclasses(TClassCallback callback, bool deep, TOptionsMap) {
  for (const InmemStore::ClassPtr& subclass : store()->subclasses(GetName(), deep)) {
    if (!callback(subclass)) return;
  }
}

void InmemClass::EnumerateProperties(TPropertyCallback callback, TOptionsMap) {
  for (std::size_t position = 0; position < m_declaration->properties.size(); ++position) {
    const TCIMValue& value = m_declaration->properties[position].defaultValue;
    if (!callback(boost::make_shared<InmemProperty>(m_declaration, position, value))) return;
  }
}

TCIMValue InmemClass::GetQualifier(std::string name, TOptionsMap) {
  const TCIMValue* const found = findQualifier(m_declaration->qualifiers, name);
  return found != nullptr ? *found : TCIMValue();
}

boost::shared_ptr<ICIMInstance> InmemClass::AllocateInstance(TOptionsMap) {
  return boost::make_shared<TInmemInstance>(shared_from_this());
}

}  // namespace vorcore
