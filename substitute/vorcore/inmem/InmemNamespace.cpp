#include "substitute/vorcore/inmem/InmemNamespace.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <map>
#include <mutex>
#include <set>
#include <shared_mutex>
#include <utility>
#include <vector>

#include "framework/ICIMProperty.h"
#include "framework/INamespaceProvider.h"
#include "framework/TCIMQualifierDecl.h"
#include "framework/TInmemInstance.h"
#include "framework/TVORException.h"
#include "substitute/vorcore/inmem/ClassImport.h"
#include "substitute/vorcore/inmem/InmemClass.h"
#include "substitute/vorcore/inmem/InmemStore.h"

namespace NZELVOR20 {
namespace {

using NamespacePtr = boost::shared_ptr<ICIMNamespace>;

[[noreturn]] void fail(EVORStatusCode code, const std::string& detail) {
  throw TVORException(TVORStatusCode(code, detail));
}

/// Takes away what a class does not hand on to its subclasses (DSP0004, 5.6.3).
void dropUninherited(vorcore::ClassDeclaration& declaration) {
  declaration.isAbstract = false;
  std::vector<vorcore::Qualifier>& qualifiers = declaration.qualifiers;
  const auto isUninherited = [](const vorcore::Qualifier& qualifier) {
    return vorcore::equalNames(qualifier.name, "Abstract") ||
           vorcore::equalNames(qualifier.name, "Deprecated") ||
           vorcore::equalNames(qualifier.name, "Experimental") ||
           vorcore::equalNames(qualifier.name, "Version");
  };
  qualifiers.erase(std::remove_if(qualifiers.begin(), qualifiers.end(), isUninherited),
                   qualifiers.end());
}

/// The namespace's own store, seen as a provider.
class StoreProvider final : public INamespaceProvider {
 public:
  explicit StoreProvider(const boost::shared_ptr<TInmemNamespace>& ns)
      : m_name(ns->name()), m_namespace(ns) {}

  std::string GetName() const override { return "memory:" + m_name; }

  NamespacePtr GetNamespace(TOptionsMap) override {
    NamespacePtr ns = m_namespace.lock();
    if (!ns) fail(eVORInvalidNamespace, m_name + " is gone");
    return ns;
  }

 private:
  std::string m_name;
  boost::weak_ptr<TInmemNamespace> m_namespace;
};

}  // namespace

struct TInmemNamespace::Impl {
  explicit Impl(std::string aName) : name(std::move(aName)) {}

  std::vector<NamespacePtr> underlyingNamespaces() const {
    const std::shared_lock<std::shared_mutex> lock(mutex);
    return underlying;
  }

  const std::string name;
  const boost::shared_ptr<vorcore::InmemStore> store = boost::make_shared<vorcore::InmemStore>();
  mutable std::shared_mutex mutex;  ///< for what follows; the store has its own
  boost::weak_ptr<ICIMNamespace> upcall;
  std::vector<NamespacePtr> underlying;
  std::map<std::string, boost::shared_ptr<TCIMQualifierDecl>> qualifierDecls;
};

TInmemNamespace::TInmemNamespace(std::string name)
    : m_impl(std::make_unique<Impl>(std::move(name))) {}

TInmemNamespace::~TInmemNamespace() = default;

boost::shared_ptr<TInmemNamespace> TInmemNamespace::make(std::string name) {
  return boost::shared_ptr<TInmemNamespace>(new TInmemNamespace(std::move(name)));
}

const std::string& TInmemNamespace::name() const noexcept { return m_impl->name; }

boost::shared_ptr<ICIMClass> TInmemNamespace::addClass(vorcore::ClassDeclaration declaration) {
  if (declaration.name.empty()) fail(eVORInvalidParameter, "a class without a name");
  const auto shared = boost::make_shared<vorcore::ClassDeclaration>(std::move(declaration));
  const auto added = boost::make_shared<vorcore::InmemClass>(
      shared, m_impl->name, boost::weak_ptr<ICIMNamespace>(shared_from_this()), m_impl->store);
  m_impl->store->addClass(added);
  return added;
}

bool TInmemNamespace::hasClass(const std::string& className) const {
  return static_cast<bool>(m_impl->store->findClass(className));
}

boost::shared_ptr<ICIMInstance> TInmemNamespace::storeInstance(ICIMInstance& instance) {
  const boost::shared_ptr<ICIMClass> itsClass = vorcore::classOf(instance);
  const std::string className =
      itsClass ? itsClass->GetName() : instance.GetObjectPath(TOptionsMap()).GetClassName();
  const vorcore::InmemStore::ClassPtr here = m_impl->store->findClass(className);
  if (!here) fail(eVORInvalidClass, "class " + className + " in " + m_impl->name);
  const vorcore::ClassDeclarationPtr declaration = here->GetDeclaration();
  const auto* const own = dynamic_cast<const TInmemInstance*>(&instance);
  boost::shared_ptr<TInmemInstance> copy;
  if (own != nullptr && itsClass == here) {
    copy = boost::make_shared<TInmemInstance>(*own);
  } else {
    copy = boost::make_shared<TInmemInstance>(here);
    const auto setDeclared = [&](const boost::shared_ptr<ICIMProperty>& property) {
      if (!property) return true;
      const std::string propertyName = property->GetName();
      if (declaration->findProperty(propertyName) != vorcore::ClassDeclaration::kNoProperty) {
        copy->SetProperty(propertyName, property->GetValue(TOptionsMap()), TOptionsMap());
      }
      return true;
    };
    instance.EnumerateProperties(setDeclared, TOptionsMap());
  }
  m_impl->store->put(*copy);
  return copy;
}

boost::shared_ptr<INamespaceProvider> TInmemNamespace::GetNamespaceProvider(TOptionsMap) {
  return boost::make_shared<StoreProvider>(shared_from_this());
}

void TInmemNamespace::SetUpcallNamespace(NamespacePtr upcall) {
  const std::unique_lock<std::shared_mutex> lock(m_impl->mutex);
  m_impl->upcall = upcall;
}

NamespacePtr TInmemNamespace::GetUpcallNamespace() const {
  const std::shared_lock<std::shared_mutex> lock(m_impl->mutex);
  return m_impl->upcall.lock();
}

void TInmemNamespace::AddUnderlyingNamespace(NamespacePtr underlying) {
  if (!underlying || underlying.get() == this) fail(eVORInvalidParameter, "underlying namespace");
  const std::unique_lock<std::shared_mutex> lock(m_impl->mutex);
  m_impl->underlying.push_back(std::move(underlying));
}

/// The first answer of an underlying namespace; empty where none knows what is looked for.
template <typename Result, typename Lookup>
boost::shared_ptr<Result> TInmemNamespace::askUnderlying(Lookup lookup) const {
  for (const NamespacePtr& underlying : m_impl->underlyingNamespaces()) {
    try {
      boost::shared_ptr<Result> found = lookup(*underlying);
      if (found) return found;
    } catch (const TVORException& exception) {
      const EVORStatusCode code = exception.GetStatus().GetStatusCode();
      const bool isUnknown =
          code == eVORNotFound || code == eVORInvalidClass || code == eVORNotSupported;
      if (!isUnknown) throw;
    }
  }
  return boost::shared_ptr<Result>();
}

boost::shared_ptr<ICIMClass> TInmemNamespace::AllocateClass(std::string name,
                                                            std::string superclass,
                                                            TOptionsMap options) {
  vorcore::ClassDeclaration declaration;
  if (!superclass.empty()) {
    const boost::shared_ptr<ICIMClass> parent = GetClass(superclass, options);
    if (!parent) fail(eVORInvalidClass, "class " + superclass);
    vorcore::importClass(*parent, *this);
    declaration = *vorcore::declarationOf(*parent);
    declaration.superclass = declaration.name;
    dropUninherited(declaration);
  }
  declaration.name = std::move(name);
  return addClass(std::move(declaration));
}

boost::shared_ptr<ICIMClass> TInmemNamespace::GetClass(std::string name, TOptionsMap options) {
  if (const vorcore::InmemStore::ClassPtr own = m_impl->store->findClass(name)) return own;
  return askUnderlying<ICIMClass>(
      [&](ICIMNamespace& underlying) { return underlying.GetClass(name, options); });
}

void TInmemNamespace::EnumerateRootClasses(TClassCallback callback, TOptionsMap options) {
  std::set<std::string> seen;
  bool goesOn = true;
  const auto handOn = [&](const boost::shared_ptr<ICIMClass>& root) {
    if (root && seen.insert(vorcore::nameKey(root->GetName())).second) goesOn = callback(root);
    return goesOn;
  };
  for (const vorcore::InmemStore::ClassPtr& root : m_impl->store->rootClasses()) {
    if (!handOn(root)) return;
  }
  for (const NamespacePtr& underlying : m_impl->underlyingNamespaces()) {
    underlying->EnumerateRootClasses(handOn, options);
    if (!goesOn) return;
  }
}

void TInmemNamespace::EnumerateProviders(TProviderCallback callback, TOptionsMap options) {
  bool goesOn = callback(GetNamespaceProvider(options));
  const auto handOn = [&](const boost::shared_ptr<INamespaceProvider>& provider) {
    goesOn = callback(provider);
    return goesOn;
  };
  for (const NamespacePtr& underlying : m_impl->underlyingNamespaces()) {
    if (!goesOn) return;
    underlying->EnumerateProviders(handOn, options);
  }
}

boost::shared_ptr<TCIMQualifierDecl> TInmemNamespace::AllocateQualifierDecl(std::string name,
                                                                            TOptionsMap) {
  const auto allocated = boost::make_shared<TCIMQualifierDecl>();
  allocated->name = name;
  const std::unique_lock<std::shared_mutex> lock(m_impl->mutex);
  if (!m_impl->qualifierDecls.emplace(vorcore::nameKey(name), allocated).second)
    fail(eVORAlreadyExists, "qualifier " + name);
  return allocated;
}

boost::shared_ptr<TCIMQualifierDecl> TInmemNamespace::GetQualifierDecl(std::string name,
                                                                       TOptionsMap options) {
  {
    const std::shared_lock<std::shared_mutex> lock(m_impl->mutex);
    const auto own = m_impl->qualifierDecls.find(vorcore::nameKey(name));
    if (own != m_impl->qualifierDecls.end()) return own->second;
  }
  boost::shared_ptr<TCIMQualifierDecl> found = askUnderlying<TCIMQualifierDecl>(
      [&](ICIMNamespace& underlying) { return underlying.GetQualifierDecl(name, options); });
  if (!found) fail(eVORNotFound, "qualifier " + name);
  return found;
}

void TInmemNamespace::EnumerateQualifierDecls(TQualifierDeclCallback callback, TOptionsMap) {
  std::vector<boost::shared_ptr<TCIMQualifierDecl>> decls;
  {
    const std::shared_lock<std::shared_mutex> lock(m_impl->mutex);
    for (const auto& decl : m_impl->qualifierDecls) decls.push_back(decl.second);
  }
  for (const auto& decl : decls) {
    if (!callback(decl)) return;
  }
}

void TInmemNamespace::Subscribe(std::string, std::string, boost::shared_ptr<INamespaceConsumer>,
                                TOptionsMap) {
  fail(eVORNotSupported, "subscriptions in the in-memory namespace " + m_impl->name);
}

boost::shared_ptr<ICIMInstance> TInmemNamespace::GetInstance(TCIMReference reference,
                                                             TOptionsMap options) {
  if (const vorcore::InmemStore::InstancePtr own = m_impl->store->find(reference)) {
    return boost::make_shared<TInmemInstance>(*own);
  }
  boost::shared_ptr<ICIMInstance> found = askUnderlying<ICIMInstance>(
      [&](ICIMNamespace& underlying) { return underlying.GetInstance(reference, options); });
  if (!found) fail(eVORNotFound, reference.GetPath());
  return found;
}

void TInmemNamespace::DeleteInstance(TCIMReference reference, TOptionsMap) {
  if (!m_impl->store->erase(reference)) fail(eVORNotFound, reference.GetPath());
}

void TInmemNamespace::ModifyInstance(boost::shared_ptr<ICIMInstance> instance, TOptionsMap) {
  if (!instance) fail(eVORInvalidParameter, "an empty instance handle");
  storeInstance(*instance);
}

void TInmemNamespace::ExecuteQuery(std::string language, std::string, TInstanceCallback,
                                   TOptionsMap) {
  fail(eVORNotSupported, language + " queries in the in-memory namespace " + m_impl->name);
}

void TInmemNamespace::ClearInstances(TOptionsMap) { m_impl->store->clear(); }

}  // namespace NZELVOR20
