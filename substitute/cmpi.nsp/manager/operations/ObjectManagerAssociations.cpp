#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/operations/Attempts.h"
#include "substitute/cmpi.nsp/manager/operations/Merge.h"
#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"

namespace cmpinsp {

namespace {

/// The association class that limits a references operation: CMPI calls it the result class.
const std::string& limitOf(const AssociationFilter& filter) {
  return filter.associationClass.empty() ? filter.resultClass : filter.associationClass;
}

}  // namespace

/// Runs `call(provider, path, sink)` for each association provider in question; every answer
/// reaches `sink` once.
template <typename Sink, typename Call>
void ObjectManager::associate(const ObjectPath& path, const std::string& associationClass,
                              const std::string& wantedClass, const Sink& sink, Call call) {
  if (!associationClass.empty()) requireClass(associationClass);
  const ObjectPath source = typed(path);
  Merge merge(*m_classes, wantedClass, false, true);
  Attempts attempts;
  for (const Route& route : router()->associations(associationClass, path.nameSpace)) {
    if (merge.stopped()) break;
    ObjectPath asked = source;
    asked.nameSpace = route.nameSpace;
    attempts.run(route, [&](Provider& provider) {
      call(provider, asked, [&](const auto& answer) { return merge.take(answer, sink); });
    });
  }
  merge.finish();
  attempts.throwFailure();
}

void ObjectManager::associators(const ObjectPath& path, const AssociationFilter& filter,
                                PropertyNames properties, const InstanceSink& sink) {
  associate(path, filter.associationClass, filter.resultClass, sink,
            [&](Provider& provider, const ObjectPath& asked, const InstanceSink& take) {
              giveInstancesOrNamed(
                  [&](const InstanceSink& each) {
                    provider.associators(asked, filter, properties, each);
                  },
                  [&](const PathSink& each) { provider.associatorNames(asked, filter, each); },
                  properties, take);
            });
}

void ObjectManager::associatorNames(const ObjectPath& path, const AssociationFilter& filter,
                                    const PathSink& sink) {
  associate(path, filter.associationClass, filter.resultClass, sink,
            [&](Provider& provider, const ObjectPath& asked, const PathSink& take) {
              provider.associatorNames(asked, filter, take);
            });
}

void ObjectManager::references(const ObjectPath& path, const AssociationFilter& filter,
                               PropertyNames properties, const InstanceSink& sink) {
  associate(path, limitOf(filter), limitOf(filter), sink,
            [&](Provider& provider, const ObjectPath& asked, const InstanceSink& take) {
              referencesOf(provider, asked, filter, properties, take);
            });
}

void ObjectManager::referenceNames(const ObjectPath& path, const AssociationFilter& filter,
                                   const PathSink& sink) {
  associate(path, limitOf(filter), limitOf(filter), sink,
            [&](Provider& provider, const ObjectPath& asked, const PathSink& take) {
              provider.referenceNames(asked, filter, take);
            });
}

}  // namespace cmpinsp
