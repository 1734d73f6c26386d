#include <exception>
#include <vector>

#include "framework/TCIMReference.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"
#include "substitute/cmpi.nsp/manager/operations/PathSet.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

/// Ways round what providers leave out: instances by their names, and an association that can be
/// enumerated but not got by a search. A search takes no other way round, so that none of them
/// leads back to where it began.
namespace cmpinsp {

namespace {

using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;

/// The instance at `path` may be of a subclass of the wanted one.
bool isWanted(const ClassRepository& classes, ObjectPath wanted, const ObjectPath& path) {
  if (!classes.isA(path.className, wanted.className)) return false;
  wanted.className = path.className;
  if (wanted.nameSpace.empty()) wanted.nameSpace = path.nameSpace;
  return PathSet::keyOf(wanted) == PathSet::keyOf(path);
}

bool isReference(const TCIMValue& value) {
  return value.GetType() == NZELVOR20::ECIMType::eReference && !value.IsNull() && !value.IsArray();
}

}  // namespace

void ObjectManager::giveInstancesOrNamed(const InstanceSource& instances, const NameSource& names,
                                         PropertyNames properties, const InstanceSink& sink) {
  try {
    return instances(sink);
  } catch (const TVORException& refusal) {
    if (refusal.GetStatus().GetStatusCode() != NZELVOR20::eVORNotSupported) throw;
  }
  giveNamed(names, properties, sink);
}

/// One that cannot be got is logged and does not keep the others back.
void ObjectManager::giveNamed(const NameSource& names, PropertyNames properties,
                              const InstanceSink& sink) {
  std::vector<ObjectPath> paths;
  names([&](const ObjectPath& path) {
    paths.push_back(path);
    return true;
  });
  std::exception_ptr failure;
  bool anyGot = false;
  for (const ObjectPath& path : paths) {
    InstanceDataPtr instance;
    try {
      instance = getInstance(path, properties);
    } catch (const TVORException& error) {
      logLine(kErrorLevel, std::string("Object manager: a name leads nowhere: ") + error.what());
      if (!failure) failure = std::current_exception();
      continue;
    }
    anyGot = true;
    if (!sink(instance)) return;
  }
  if (!anyGot && failure) std::rethrow_exception(failure);
}

void ObjectManager::referencesOf(Provider& provider, const ObjectPath& end,
                                 const AssociationFilter& filter, PropertyNames properties,
                                 const InstanceSink& sink) {
  giveInstancesOrNamed(
      [&](const InstanceSink& each) { provider.references(end, filter, properties, each); },
      [&](const PathSink& each) { provider.referenceNames(end, filter, each); }, properties, sink);
}

/// Among what the providers of the class enumerate; then from the ends that the path names, each of
/// the class that it is of there.
InstanceDataPtr ObjectManager::searchAssociation(const ObjectPath& path, PropertyNames properties) {
  const vorcore::ClassDeclarationPtr declaration = m_classes->find(path.className);
  if (!declaration || !declaration->isAssociation) return InstanceDataPtr();
  InstanceDataPtr found;
  const auto take = [&](const InstanceDataPtr& instance) {
    if (isWanted(*m_classes, path, instance->path)) found = instance;
    return !found;
  };
  Attempts attempts;
  const boost::shared_ptr<const Router> router = this->router();
  for (const Route& route : router->downwards(path.className, path.nameSpace, kInstanceInterface)) {
    attempts.run(route, [&](Provider& provider) {
      provider.enumerateInstances({route.nameSpace, route.className, {}}, properties, take);
    });
    if (found) return found;
  }
  const std::vector<Route> routes = router->associations(path.className, path.nameSpace);
  for (const auto& key : path.keys) {
    if (!isReference(key.second)) continue;
    const ObjectPath end = pathOf(key.second.ToReference());
    const AssociationFilter filter{path.className, path.className, key.first, std::string()};
    for (const Route& route : routes) {
      ObjectPath asked = typed(end);
      if (asked.nameSpace.empty()) asked.nameSpace = route.nameSpace;
      attempts.run(
          route, [&](Provider& provider) { provider.references(asked, filter, properties, take); });
      if (found) return found;
    }
  }
  return found;
}

}  // namespace cmpinsp
