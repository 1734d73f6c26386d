#include <algorithm>
#include <iterator>

#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/manager/operations/Attempts.h"
#include "substitute/cmpi.nsp/manager/operations/Merge.h"
#include "substitute/cmpi.nsp/manager/operations/Narrowing.h"
#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"
#include "substitute/cmpi.nsp/manager/operations/QueryAnswers.h"
#include "substitute/cmpi.nsp/manager/operations/ReferenceWalk.h"
#include "substitute/cmpi.nsp/manager/operations/Refusals.h"
#include "substitute/cmpi.nsp/manager/operations/SelectQuery.h"

namespace cmpinsp {

namespace {

ObjectPath classPathOf(const Route& route) { return {route.nameSpace, route.className, {}}; }

/// The answers of one enumeration of instances.
struct InstanceAnswers {
  ObjectManager& manager;
  PropertyNames properties;
  const InstanceSink& sink;
  static constexpr bool walks = true;
  static constexpr bool mayRepeat = false;

  void ask(Provider& provider, const ObjectPath& classPath, Merge& merge) const {
    provider.enumerateInstances(classPath, properties, [&](const InstanceDataPtr& instance) {
      return give(instance, merge);
    });
  }
  void askReferences(Provider& provider, const ObjectPath& end, const AssociationFilter& filter,
                     Merge& merge) const {
    manager.referencesOf(provider, end, filter, properties,
                         [&](const InstanceDataPtr& instance) { return give(instance, merge); });
  }
  bool give(const InstanceDataPtr& instance, Merge& merge) const {
    return merge.take(narrowed(instance, properties), sink);
  }
};

/// The same for an enumeration of names.
struct NameAnswers {
  const PathSink& sink;
  bool walks;  ///< associations are wanted too
  static constexpr bool mayRepeat = false;

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

bool isAmong(const Route& route, const std::vector<Route>& routes) {
  return std::any_of(routes.begin(), routes.end(), [&](const Route& other) {
    return other.provider == route.provider && other.className == route.className;
  });
}

/// Those of `routes` that are not among `others`.
std::vector<Route> without(std::vector<Route> routes, const std::vector<Route>& others) {
  routes.erase(std::remove_if(routes.begin(), routes.end(),
                              [&](const Route& route) { return isAmong(route, others); }),
               routes.end());
  return routes;
}

}  // namespace

/// Where instances of one class come from that no instance provider of it delivers.
struct ObjectManager::OtherSource {
  std::string className;
  bool hasStatic = false;
  std::vector<Route> walked;  ///< association providers, as far as they deliver no instances
};

/// The other sources of the classes in question; of the instance providers, `refused` have answered
/// that they deliver none.
std::vector<ObjectManager::OtherSource> ObjectManager::otherSources(
    const ObjectPath& classPath, bool deep, const std::vector<Route>& refused) const {
  std::vector<std::string> names{classPath.className};
  if (deep) {
    std::vector<std::string> below = m_classes->subclasses(classPath.className, true);
    std::move(below.begin(), below.end(), std::back_inserter(names));
  }
  const boost::shared_ptr<const Router> router = this->router();
  std::vector<OtherSource> sources;
  for (std::string& name : names) {
    const std::vector<Route> all = router->direct(name, classPath.nameSpace, kInstanceInterface);
    const std::vector<Route> serving = without(all, refused);
    const bool isServed = !all.empty() && serving.size() == all.size();
    OtherSource source;
    source.hasStatic = !isServed && !m_static.of(name).empty();
    source.walked =
        without(router->direct(name, classPath.nameSpace, kAssociationInterface), serving);
    source.className = std::move(name);
    if (source.hasStatic || !source.walked.empty()) sources.push_back(std::move(source));
  }
  return sources;
}

template <typename Answers>
void ObjectManager::enumerateInto(const ObjectPath& classPath, bool deep, const Answers& answers) {
  requireClass(classPath.className);
  const boost::shared_ptr<const Router> router = this->router();
  const std::vector<Route> routes =
      deep ? router->downwards(classPath.className, classPath.nameSpace, kInstanceInterface)
           : router->direct(classPath.className, classPath.nameSpace, kInstanceInterface);
  std::vector<OtherSource> others = otherSources(classPath, deep, {});
  // A provider may deliver something before it refuses.
  const bool mayComeTwice = answers.mayRepeat || routes.size() > 1 || !others.empty() ||
                            !otherSources(classPath, deep, routes).empty();
  Merge merge(*m_classes, classPath.className, !deep, mayComeTwice);
  Attempts attempts;
  Refusals refusals;
  std::vector<Route> refused;
  for (const Route& route : routes) {
    if (merge.stopped()) break;
    const std::size_t before = merge.offered();
    const Outcome outcome = attempts.run(
        route, [&](Provider& provider) { answers.ask(provider, classPathOf(route), merge); });
    refusals.add(route.className, outcome, attempts.reason());
    if (merge.offered() != before) refusals.addAnswer(route.className);
    if (outcome == Outcome::eRefused) refused.push_back(route);
  }
  if (!refused.empty()) others = otherSources(classPath, deep, refused);
  for (const OtherSource& source : others) {
    giveFrom(source, classPath.nameSpace, answers, merge, attempts, refusals);
    if (merge.stopped()) break;
  }
  tell(refusals);
  merge.finish();
  attempts.throwFailure();
}

template <typename Answers>
void ObjectManager::giveFrom(const OtherSource& source, const std::string& nameSpace,
                             const Answers& answers, Merge& merge, Attempts& attempts,
                             Refusals& refusals) {
  if (source.hasStatic) {
    for (const InstanceDataPtr& instance : m_static.of(source.className)) {
      if (merge.stopped()) return;
      if (!isIn(instance, nameSpace)) continue;
      refusals.addAnswer(source.className);
      answers.give(instance, merge);
    }
  }
  if (!answers.walks) return;
  // Ends are no associations: a faulty schema with some among them would be walked for ever.
  const auto endsOf = [&](const ObjectPath& endPath, const PathSink& take) {
    enumerateInto(endPath, true, NameAnswers{take, false});
  };
  walkReferences(*m_classes, source.walked, {nameSpace, source.className, {}}, attempts, endsOf,
                 [&](const Route& route, const ObjectPath& end, const AssociationFilter& filter) {
                   const Outcome outcome = attempts.run(route, [&](Provider& provider) {
                     answers.askReferences(provider, end, filter, merge);
                   });
                   refusals.add(source.className, outcome, attempts.reason());
                   return !merge.stopped();
                 });
}

void ObjectManager::tell(const Refusals& refusals) {
  for (const std::string& text : refusals.texts()) {
    logLine(kWarningLevel, "Object manager: " + text);
    m_refusals.keep(text);
  }
}

void ObjectManager::enumerate(const ObjectPath& classPath, bool deep, PropertyNames properties,
                              const InstanceSink& sink) {
  enumerateInto(classPath, deep, InstanceAnswers{*this, properties, sink});
}

void ObjectManager::enumerateNames(const ObjectPath& classPath, bool deep, const PathSink& sink) {
  enumerateInto(classPath, deep, NameAnswers{sink, true});
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
  const ReadQuery read = ReadQuery::of(language, query);
  if (!read.query) return passQueryOn(classPath, query, language, sink, read.refusal);
  requireProperties(*read.query, *m_classes);
  enumerateInto(classPath, true, QueryAnswers(*this, *read.query, language, *m_classes, sink));
}

/// A query that only providers may understand; where none answers, `refusal` is the reason.
void ObjectManager::passQueryOn(const ObjectPath& classPath, const std::string& query,
                                const std::string& language, const InstanceSink& sink,
                                const std::exception_ptr& refusal) {
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
  attempts.throwFailure();
  if (!attempts.anySuccess()) std::rethrow_exception(refusal);
}

}  // namespace cmpinsp
