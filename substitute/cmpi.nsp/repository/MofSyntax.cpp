#include "substitute/cmpi.nsp/repository/MofSyntax.h"

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

const AssignmentSyntax* InstanceSyntax::find(const std::string& name) const {
  for (const AssignmentSyntax& assignment : assignments) {
    if (vorcore::equalNames(assignment.name, name)) return &assignment;
  }
  return nullptr;
}

}  // namespace cmpinsp
