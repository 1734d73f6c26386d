#include "substitute/cmpi.nsp/manager/face/CmpiNamespace.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <utility>

#include "framework/CMPINSPInstanceRegistry.h"
#include "framework/INamespaceProvider.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/manager/face/CmpiClass.h"
#include "substitute/cmpi.nsp/manager/face/CmpiInstance.h"
#include "substitute/cmpi.nsp/manager/face/CmpiNamespaceProvider.h"
#include "substitute/cmpi.nsp/manager/face/Failure.h"
#include "substitute/cmpi.nsp/manager/operations/SelectQuery.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {

using namespace NZELVOR20;

CmpiNamespace::CmpiNamespace(boost::shared_ptr<ObjectManager> manager, QualifierTable qualifiers)
    : m_manager(std::move(manager)), m_qualifiers(std::move(qualifiers)) {}

boost::shared_ptr<ICIMInstance> CmpiNamespace::handOut(const InstanceDataPtr& data) {
  boost::shared_ptr<ICIMInstance> instance =
      boost::make_shared<CmpiInstance>(data, weak_from_this());
  CMPINSPInstanceRegistry::GetRegistrySingleton()->AddInstance(instance);
  return instance;
}

boost::shared_ptr<INamespaceProvider> CmpiNamespace::GetNamespaceProvider(TOptionsMap) {
  return boost::make_shared<CmpiNamespaceProvider>(weak_from_this(), ManagedProviderPtr());
}

void CmpiNamespace::SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall) {
  m_upcall = upcall;
  m_manager->setNamespaceHandle(upcall);
}

void CmpiNamespace::AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace>) {
  throw failure(eVORNotSupported, "nothing lies below the CMPI namespace");
}

boost::shared_ptr<ICIMClass> CmpiNamespace::AllocateClass(std::string name, std::string,
                                                          TOptionsMap) {
  throw failure(eVORNotSupported, "class " + name + ": classes come from the schema files");
}

boost::shared_ptr<ICIMClass> CmpiNamespace::GetClass(std::string name, TOptionsMap) {
  vorcore::ClassDeclarationPtr declaration = m_manager->findClass(name);
  if (!declaration) throw failure(eVORInvalidClass, name);
  return boost::make_shared<CmpiClass>(std::move(declaration), weak_from_this());
}

void CmpiNamespace::EnumerateRootClasses(TClassCallback callback, TOptionsMap options) {
  for (const std::string& name : m_manager->classes().rootClasses()) {
    if (!callback(GetClass(name, options))) return;
  }
}

void CmpiNamespace::EnumerateProviders(TProviderCallback callback, TOptionsMap) {
  for (const ManagedProviderPtr& provider : m_manager->providers()) {
    if (!callback(boost::make_shared<CmpiNamespaceProvider>(weak_from_this(), provider))) return;
  }
}

boost::shared_ptr<TCIMQualifierDecl> CmpiNamespace::AllocateQualifierDecl(std::string name,
                                                                          TOptionsMap) {
  throw failure(eVORNotSupported, "qualifier " + name + ": qualifiers come from the schema files");
}

boost::shared_ptr<TCIMQualifierDecl> CmpiNamespace::GetQualifierDecl(std::string name,
                                                                     TOptionsMap) {
  const TCIMQualifierDecl* found = m_qualifiers.find(name);
  if (found == nullptr) throw failure(eVORNotFound, "qualifier " + name);
  return boost::make_shared<TCIMQualifierDecl>(*found);
}

void CmpiNamespace::EnumerateQualifierDecls(TQualifierDeclCallback callback, TOptionsMap) {
  for (const TCIMQualifierDecl* declaration : m_qualifiers.all()) {
    if (!callback(boost::make_shared<TCIMQualifierDecl>(*declaration))) return;
  }
}

void CmpiNamespace::Subscribe(std::string, std::string, boost::shared_ptr<INamespaceConsumer>,
                              TOptionsMap) {
  throw failure(eVORNotSupported, "the CMPI namespace delivers no events");
}

boost::shared_ptr<ICIMInstance> CmpiNamespace::GetInstance(TCIMReference reference, TOptionsMap) {
  return handOut(m_manager->getInstance(pathOf(reference), nullptr));
}

void CmpiNamespace::DeleteInstance(TCIMReference reference, TOptionsMap) {
  m_manager->deleteInstance(pathOf(reference));
}

void CmpiNamespace::ModifyInstance(boost::shared_ptr<ICIMInstance> instance, TOptionsMap) {
  if (!instance) throw failure(eVORInvalidParameter, "an empty instance cannot be written");
  const InstanceDataPtr data = dataOf(*instance);
  m_manager->modifyInstance(data->path, data, nullptr);
}

void CmpiNamespace::ExecuteQuery(std::string language, std::string query,
                                 TInstanceCallback callback, TOptionsMap) {
  const SelectQuery select = SelectQuery::parse(language, query);
  const ObjectPath classPath{std::string(), select.className, {}};
  const auto take = [&](const InstanceDataPtr& data) { return callback(handOut(data)); };
  if (select.selectsEverything) {
    m_manager->enumerate(classPath, true, nullptr, take);
  } else {
    m_manager->executeQuery(classPath, query, language, take);
  }
}

void CmpiNamespace::ClearInstances(TOptionsMap) {
  CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances();
}

void CmpiNamespace::Consume(boost::shared_ptr<ICIMInstance>) {
  throw failure(eVORNotSupported, "the CMPI namespace consumes no events");
}

boost::shared_ptr<CmpiNamespace> cmpiNamespaceOf(const boost::shared_ptr<ICIMNamespace>& ns,
                                                 const std::string& className) {
  boost::shared_ptr<CmpiNamespace> served = boost::dynamic_pointer_cast<CmpiNamespace>(ns);
  if (!served) {
    const boost::shared_ptr<ICIMClass> found = ns->GetClass(className, TOptionsMap());
    if (found) {
      served = boost::dynamic_pointer_cast<CmpiNamespace>(found->GetNamespace(TOptionsMap()));
    }
  }
  if (served) return served;
  throw failure(eVORNotSupported, "no CMPI provider serves class " + className);
}

}  // namespace cmpinsp
