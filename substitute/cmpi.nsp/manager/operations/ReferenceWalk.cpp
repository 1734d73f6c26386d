#include "substitute/cmpi.nsp/manager/operations/ReferenceWalk.h"

#include <algorithm>

namespace cmpinsp {

namespace {

/// The first reference among the class's properties whose class is no association itself, or null.
const vorcore::PropertyDeclaration* endpointOf(const vorcore::ClassDeclaration& declaration,
                                               const ClassRepository& classes) {
  const auto& properties = declaration.properties;
  const auto found = std::find_if(properties.begin(), properties.end(), [&](const auto& property) {
    if (property.type != NZELVOR20::ECIMType::eReference) return false;
    const vorcore::ClassDeclarationPtr end = classes.find(property.referenceClass);
    return end && !end->isAssociation;
  });
  return found == properties.end() ? nullptr : &*found;
}

}  // namespace

void walkReferences(const ClassRepository& classes, const std::vector<Route>& routes,
                    const ObjectPath& classPath, Attempts& attempts, const EndQuestion& endsOf,
                    const ReferenceQuestion& ask) {
  const vorcore::ClassDeclarationPtr declaration = classes.find(classPath.className);
  if (routes.empty() || !declaration || !declaration->isAssociation) return;
  const vorcore::PropertyDeclaration* endpoint = endpointOf(*declaration, classes);
  if (endpoint == nullptr) return;

  std::vector<ObjectPath> ends;
  attempts.prepare("the ends of " + classPath.className, [&] {
    endsOf({classPath.nameSpace, endpoint->referenceClass, {}}, [&](const ObjectPath& path) {
      ends.push_back(path);
      return true;
    });
  });
  AssociationFilter filter;
  filter.associationClass = classPath.className;
  filter.resultClass = classPath.className;
  filter.role = endpoint->name;
  for (const Route& route : routes) {
    for (const ObjectPath& end : ends) {
      if (!ask(route, end, filter)) return;
    }
  }
}

}  // namespace cmpinsp
