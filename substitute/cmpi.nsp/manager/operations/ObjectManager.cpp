#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/operations/KeyTypes.h"
#include "substitute/cmpi.nsp/manager/operations/Narrowing.h"

namespace cmpinsp {

using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

ObjectManager::ObjectManager(boost::shared_ptr<const ClassTable> classes,
                             std::vector<RegisteredProvider> providers,
                             const std::string& providersFolder)
    : m_classes(std::move(classes)), m_trust(providersFolder) {
  for (RegisteredProvider& provider : providers) {
    m_providers.push_back(
        boost::make_shared<ManagedProvider>(std::move(provider), providersFolder, m_trust, *this));
  }
  m_router = boost::make_shared<Router>(*m_classes, m_providers);
}

ObjectManager::~ObjectManager() {
  const boost::shared_ptr<const Router> nobody =
      boost::make_shared<Router>(*m_classes, std::vector<ManagedProviderPtr>());
  boost::atomic_store(&m_router, nobody);
  m_providers.clear();
}

boost::shared_ptr<const Router> ObjectManager::router() const {
  return boost::atomic_load(&m_router);
}

vorcore::ClassDeclarationPtr ObjectManager::findClass(const std::string& className) const {
  vorcore::ClassDeclarationPtr declaration = m_classes->find(className);
  if (declaration || !router()->isRegistered(className)) return declaration;
  auto bare = boost::make_shared<vorcore::ClassDeclaration>();
  bare->name = className;
  return bare;
}

void ObjectManager::requireClass(const std::string& className) const {
  if (m_classes->knows(className) || router()->isRegistered(className)) return;
  throw TVORException(TVORStatusCode(NZELVOR20::eVORInvalidClass, className));
}

ObjectPath ObjectManager::typed(const ObjectPath& path) const {
  return withDeclaredKeyTypes(path, m_classes->find(path.className).get(), namespaceHandle());
}

namespace {

/// The instance's path. Where its class does not tell the keys, whoever asks does.
ObjectPath pathWithKeysOf(const ObjectPath& asked, const InstanceData& instance) {
  if (!instance.declaration || !instance.declaration->isOpen) return instance.path;
  ObjectPath path{instance.path.nameSpace, instance.path.className, {}};
  for (const auto& key : asked.keys) {
    const NZELVOR20::TCIMValue* value = instance.find(key.first);
    if (value != nullptr) path.keys.emplace_back(key.first, *value);
  }
  return path;
}

}  // namespace

InstanceDataPtr ObjectManager::findStatic(const ObjectPath& path) const {
  std::vector<std::string> names = m_classes->subclasses(path.className, true);
  names.push_back(path.className);
  for (const std::string& name : names) {
    for (const InstanceDataPtr& instance : m_static.of(name)) {
      ObjectPath wanted = path;
      wanted.className = instance->path.className;
      if (wanted.nameSpace.empty()) wanted.nameSpace = instance->path.nameSpace;
      if (pathWithKeysOf(wanted, *instance) == wanted) return instance;
    }
  }
  return InstanceDataPtr();
}

std::vector<Route> ObjectManager::instanceRoutes(const ObjectPath& path) const {
  requireClass(path.className);
  return router()->towardsInstance(path.className, path.nameSpace, kInstanceInterface);
}

Attempts ObjectManager::askInTurn(const ObjectPath& path, const std::vector<Route>& routes,
                                  const Question& question) const {
  const ObjectPath wanted = typed(path);
  Attempts attempts;
  for (const Route& route : routes) {
    ObjectPath asked = wanted;
    asked.nameSpace = route.nameSpace;
    asked.className = route.className;
    bool done = false;
    attempts.run(route, [&](Provider& provider) { done = question(provider, asked); });
    if (done) break;
  }
  return attempts;
}

void ObjectManager::askForInstance(const ObjectPath& path, const std::vector<Route>& routes,
                                   const Question& question) const {
  askInTurn(path, routes, question).throwAnything();
}

InstanceDataPtr ObjectManager::getInstance(const ObjectPath& path, PropertyNames properties) {
  InstanceDataPtr found = findStatic(typed(path));
  if (!found) {
    const auto get = [&](Provider& provider, const ObjectPath& asked) {
      found = provider.getInstance(asked, properties);
      return static_cast<bool>(found);
    };
    const Attempts attempts = askInTurn(path, instanceRoutes(path), get);
    if (!found) found = searchAssociation(typed(path), properties);
    if (!found) attempts.throwAnything();
  }
  if (found) return narrowed(found, properties);
  throw TVORException(TVORStatusCode(NZELVOR20::eVORNotFound, path.toText()));
}

ObjectPath ObjectManager::createInstance(const ObjectPath& path, const InstanceDataPtr& instance) {
  requireClass(path.className);
  ObjectPath created;
  bool done = false;
  const std::vector<Route> routes =
      router()->upwards(path.className, path.nameSpace, kInstanceInterface);
  askForInstance(path, routes, [&](Provider& provider, const ObjectPath& asked) {
    created = provider.createInstance(asked, instance);
    return done = true;
  });
  requireServed(done, path);
  return created;
}

void ObjectManager::modifyInstance(const ObjectPath& path, const InstanceDataPtr& instance,
                                   PropertyNames properties) {
  bool done = false;
  askForInstance(path, instanceRoutes(path), [&](Provider& provider, const ObjectPath& asked) {
    provider.modifyInstance(asked, instance, properties);
    return done = true;
  });
  requireServed(done, path);
}

void ObjectManager::deleteInstance(const ObjectPath& path) {
  bool done = false;
  askForInstance(path, instanceRoutes(path), [&](Provider& provider, const ObjectPath& asked) {
    provider.deleteInstance(asked);
    return done = true;
  });
  requireServed(done, path);
}

void ObjectManager::requireServed(bool served, const ObjectPath& path) {
  if (served) return;
  throw TVORException(TVORStatusCode(NZELVOR20::eVORNotSupported,
                                     "no provider changes instances of " + path.className));
}

}  // namespace cmpinsp
