#include <algorithm>
#include <iterator>

#include "substitute/cmpi.nsp/manager/Attempts.h"
#include "substitute/cmpi.nsp/manager/Merge.h"
#include "substitute/cmpi.nsp/manager/Narrowing.h"
#include "substitute/cmpi.nsp/manager/ObjectManager.h"
#include "substitute/cmpi.nsp/manager/ReferenceWalk.h"

namespace cmpinsp {

namespace {

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
      if (isIn(instance, classPath.nameSpace) && !answers.give(instance, merge)) break;
    }
    if (merge.stopped()) break;
    merge.compare();
    walkReferences(*this, *router, {classPath.nameSpace, className, {}}, attempts,
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

}  // namespace cmpinsp
