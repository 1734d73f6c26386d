#include "substitute/cmpi.nsp/manager/operations/ReferenceWalk.h"

#include <vector>

namespace cmpinsp {

namespace {

/// The references among the class's properties whose class is no association itself.
std::vector<const vorcore::PropertyDeclaration*> endpointsOf(
    const vorcore::ClassDeclaration& declaration, const ClassRepository& classes) {
  std::vector<const vorcore::PropertyDeclaration*> endpoints;
  for (const vorcore::PropertyDeclaration& property : declaration.properties) {
    if (property.type != NZELVOR20::ECIMType::eReference) continue;
    const vorcore::ClassDeclarationPtr end = classes.find(property.referenceClass);
    if (end && !end->isAssociation) endpoints.push_back(&property);
  }
  return endpoints;
}

/// Whatever their classes are: what is below the class of a reference need not be declared.
std::vector<ObjectPath> collectEnds(const ObjectPath& classPath,
                                    const vorcore::PropertyDeclaration& endpoint,
                                    Attempts& attempts, const EndQuestion& endsOf) {
  std::vector<ObjectPath> ends;
  attempts.prepare("the ends of " + classPath.className, [&] {
    endsOf({classPath.nameSpace, endpoint.referenceClass, {}}, [&](const ObjectPath& path) {
      ends.push_back(path);
      return true;
    });
  });
  return ends;
}

}  // namespace

void walkReferences(const ClassRepository& classes, const std::vector<Route>& routes,
                    const ObjectPath& classPath, Attempts& attempts, const EndQuestion& endsOf,
                    const ReferenceQuestion& ask) {
  const vorcore::ClassDeclarationPtr declaration = classes.find(classPath.className);
  if (routes.empty() || !declaration || !declaration->isAssociation) return;
  for (const vorcore::PropertyDeclaration* endpoint : endpointsOf(*declaration, classes)) {
    const std::vector<ObjectPath> ends = collectEnds(classPath, *endpoint, attempts, endsOf);
    if (ends.empty()) continue;
    const AssociationFilter filter{classPath.className, classPath.className, endpoint->name, {}};
    for (const Route& route : routes) {
      for (const ObjectPath& end : ends) {
        if (!ask(route, end, filter)) return;
      }
    }
    return;
  }
}

}  // namespace cmpinsp
