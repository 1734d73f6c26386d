#pragma once

#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"

namespace cmpinsp {

/// Makes declarations of the classes of `units`, whose order does not matter. Of two different
/// definitions of a class the first stays; a class whose superclass is missing, or that inherits
/// from itself, is left out with its subclasses. Both are reported.
void buildClasses(const std::vector<CompilationUnit>& units, const QualifierTable& qualifiers,
                  ClassTable& classes, std::vector<substitute::Problem>& problems);

}  // namespace cmpinsp
