#include "substitute/cmpi.nsp/manager/ObjectManager.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <iterator>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/Attempts.h"
#include "substitute/cmpi.nsp/manager/KeyTypes.h"
#include "substitute/cmpi.nsp/manager/Merge.h"
#include "substitute/cmpi.nsp/manager/ReferenceWalk.h"

namespace cmpinsp {

using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

namespace {

/// `instance` with nothing but the wanted properties and the keys; providers may hand out more than
/// was asked for.
InstanceDataPtr narrowed(const InstanceDataPtr& instance, PropertyNames wanted) {
  if (wanted == nullptr || !instance->declaration) return instance;
  InstanceDataPtr copy = boost::make_shared<InstanceData>(*instance);
  const auto& properties = copy->declaration->properties;
  for (std::size_t at = 0; at < copy->values.size(); ++at) {
    const bool isWanted = properties[at].isKey ||
                          std::any_of(wanted->begin(), wanted->end(), [&](const std::string& name) {
                            return vorcore::equalNames(name, properties[at].name);
                          });
    if (!isWanted) copy->values[at] = TCIMValue::Null(properties[at].type, properties[at].isArray);
  }
  return copy;
}

ObjectPath classPathOf(const Route& route) { return {route.nameSpace, route.className, {}}; }

/// The answers of one enumeration of instances.
struct InstanceAnswers {
  PropertyNames properties;
  const InstanceSink& sink;

  void ask(Provider& provider, const ObjectPath& classPath, Merge& merge) const {
    provider.enumerateInstances(classPath, properties, [&](const InstanceDataPtr& instance) {
      return give(instance, merge);
    });
  }
  void askReferences(Provider& provider, const ObjectPath& end, const AssociationFilter& filter,
                     Merge& merge) const {
    provider.references(end, filter, properties,
                        [&](const InstanceDataPtr& instance) { return give(instance, merge); });
  }
  bool give(const InstanceDataPtr& instance, Merge& merge) const {
    return merge.take(narrowed(instance, properties), sink);
  }
};

/// The same for an enumeration of names.
struct NameAnswers {
  const PathSink& sink;

  void ask(Provider& provider, const ObjectPath& classPath, Merge& merge) const {
    provider.enumerateInstanceNames(classPath,
                                    [&](const ObjectPath& path) { return merge.take(path, sink); });
  }
  void askReferences(Provider& provider, const ObjectPath& end, const AssociationFilter& filter,
                     Merge& merge) const {
    provider.referenceNames(end, filter,
                            [&](const ObjectPath& path) { return merge.take(path, sink); });
  }
  bool give(const InstanceDataPtr& instance, Merge& merge) const {
    return merge.take(instance->path, sink);
  }
};

}  // namespace

ObjectManager::ObjectManager(boost::shared_ptr<const ClassTable> classes,
                             std::vector<RegisteredProvider> providers,
                             const std::string& providersFolder)
    : m_classes(std::move(classes)) {
  for (RegisteredProvider& provider : providers) {
    m_providers.push_back(
        boost::make_shared<ManagedProvider>(std::move(provider), providersFolder, *this));
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
  if (m_classes->find(className) || router()->isRegistered(className)) return;
  throw TVORException(TVORStatusCode(NZELVOR20::eVORInvalidClass, className));
}

ObjectPath ObjectManager::typed(const ObjectPath& path) const {
  return withDeclaredKeyTypes(path, m_classes->find(path.className).get(), namespaceHandle());
}

/// The classes in question that have instances which no instance provider delivers: static ones,
/// and associations that only an association provider knows.
std::vector<std::string> ObjectManager::otherSources(const ObjectPath& classPath, bool deep) const {
  std::vector<std::string> names{classPath.className};
  if (deep) {
    std::vector<std::string> below = m_classes->subclasses(classPath.className, true);
    std::move(below.begin(), below.end(), std::back_inserter(names));
  }
  const boost::shared_ptr<const Router> router = this->router();
  const auto isServedOrEmpty = [&](const std::string& name) {
    if (!router->direct(name, classPath.nameSpace, kInstanceInterface).empty()) return true;
    return m_static.of(name).empty() &&
           router->direct(name, classPath.nameSpace, kAssociationInterface).empty();
  };
  names.erase(std::remove_if(names.begin(), names.end(), isServedOrEmpty), names.end());
  return names;
}

template <typename Answers>
void ObjectManager::enumerateInto(const ObjectPath& classPath, bool deep, const Answers& answers) {
  requireClass(classPath.className);
  const boost::shared_ptr<const Router> router = this->router();
  const std::vector<Route> routes =
      deep ? router->downwards(classPath.className, classPath.nameSpace, kInstanceInterface)
           : router->direct(classPath.className, classPath.nameSpace, kInstanceInterface);
  std::vector<std::string> others = otherSources(classPath, deep);
  Merge merge(*m_classes, classPath.className, !deep, routes.size() + others.size() > 1);
  Attempts attempts;
  for (const Route& route : routes) {
    if (merge.stopped()) break;
    const Outcome outcome = attempts.run(
        route, [&](Provider& provider) { answers.ask(provider, classPathOf(route), merge); });
    if (outcome == Outcome::eRefused) others.push_back(route.className);
  }
  for (const std::string& className : others) {
    for (const InstanceDataPtr& instance : m_static.of(className)) {
      if (!answers.give(instance, merge)) break;
    }
    if (merge.stopped()) break;
    merge.compare();
    walkReferences(*this, *router, {classPath.nameSpace, className, {}},
                   [&](const Route& route, const ObjectPath& end, const AssociationFilter& filter) {
                     attempts.run(route, [&](Provider& provider) {
                       answers.askReferences(provider, end, filter, merge);
                     });
                     return !merge.stopped();
                   });
  }
  merge.finish();
  attempts.throwFailure();
}

void ObjectManager::enumerate(const ObjectPath& classPath, bool deep, PropertyNames properties,
                              const InstanceSink& sink) {
  enumerateInto(classPath, deep, InstanceAnswers{properties, sink});
}

void ObjectManager::enumerateNames(const ObjectPath& classPath, bool deep, const PathSink& sink) {
  enumerateInto(classPath, deep, NameAnswers{sink});
}

void ObjectManager::enumerateInstances(const ObjectPath& classPath, PropertyNames properties,
                                       const InstanceSink& sink) {
  enumerate(classPath, true, properties, sink);
}

void ObjectManager::enumerateInstanceNames(const ObjectPath& classPath, const PathSink& sink) {
  enumerateNames(classPath, true, sink);
}

InstanceDataPtr ObjectManager::findStatic(const ObjectPath& path) const {
  std::vector<std::string> names = m_classes->subclasses(path.className, true);
  names.push_back(path.className);
  for (const std::string& name : names) {
    for (const InstanceDataPtr& instance : m_static.of(name)) {
      ObjectPath wanted = path;
      wanted.className = instance->path.className;
      if (wanted.nameSpace.empty()) wanted.nameSpace = instance->path.nameSpace;
      if (instance->path == wanted) return instance;
    }
  }
  return InstanceDataPtr();
}

std::vector<Route> ObjectManager::instanceRoutes(const ObjectPath& path) const {
  requireClass(path.className);
  return router()->towardsInstance(path.className, path.nameSpace, kInstanceInterface);
}

/// Asks the providers in turn, until `call(provider, path)` answers true.
template <typename Call>
void ObjectManager::askForInstance(const ObjectPath& path, const std::vector<Route>& routes,
                                   Call call) {
  const ObjectPath wanted = typed(path);
  Attempts attempts;
  for (const Route& route : routes) {
    ObjectPath asked = wanted;
    asked.nameSpace = route.nameSpace;
    asked.className = route.className;
    bool done = false;
    attempts.run(route, [&](Provider& provider) { done = call(provider, asked); });
    if (done) return;
  }
  attempts.throwAnything();
}

InstanceDataPtr ObjectManager::getInstance(const ObjectPath& path, PropertyNames properties) {
  InstanceDataPtr found;
  const InstanceDataPtr fixed = findStatic(typed(path));
  if (!fixed) {
    askForInstance(path, instanceRoutes(path), [&](Provider& provider, const ObjectPath& asked) {
      found = provider.getInstance(asked, properties);
      return static_cast<bool>(found);
    });
  }
  if (!found) found = fixed;
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

void ObjectManager::executeQuery(const ObjectPath& classPath, const std::string& query,
                                 const std::string& language, const InstanceSink& sink) {
  requireClass(classPath.className);
  const std::vector<Route> routes =
      router()->downwards(classPath.className, classPath.nameSpace, kInstanceInterface);
  Merge merge(*m_classes, classPath.className, false, routes.size() > 1);
  Attempts attempts;
  for (const Route& route : routes) {
    if (merge.stopped()) break;
    attempts.run(route, [&](Provider& provider) {
      provider.executeQuery(
          classPathOf(route), query, language,
          [&](const InstanceDataPtr& instance) { return merge.take(instance, sink); });
    });
  }
  merge.finish();
  attempts.throwAnything();
}

void ObjectManager::setProperty(const ObjectPath& path, const std::string& name,
                                const TCIMValue& value) {
  InstanceDataPtr data = boost::make_shared<InstanceData>();
  data->path = path;
  data->declaration = m_classes->find(path.className);
  const std::size_t position = data->declaration ? data->declaration->findProperty(name)
                                                 : vorcore::ClassDeclaration::kNoProperty;
  if (position == vorcore::ClassDeclaration::kNoProperty) {
    data->extras.emplace_back(name, value);
  } else {
    const vorcore::PropertyDeclaration& property = data->declaration->properties[position];
    data->values.resize(data->declaration->properties.size());
    data->values[position] = vorcore::convertTo(value, property.type, property.isArray);
  }
  const std::vector<std::string> names{name};
  modifyInstance(path, data, &names);
}

TCIMValue ObjectManager::getProperty(const ObjectPath& path, const std::string& name) {
  const std::vector<std::string> names{name};
  const InstanceDataPtr instance = getInstance(path, &names);
  const TCIMValue* value = instance->find(name);
  if (value != nullptr) return *value;
  throw TVORException(TVORStatusCode(NZELVOR20::eVORNoSuchProperty, path.className + "." + name));
}

}  // namespace cmpinsp
