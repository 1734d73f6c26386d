#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"

namespace cmpinsp {

/// A class that others name as their superclass, and that nobody declares.
struct MissingClass {
  std::string name;
  std::string subclass;  ///< the first class that names it, and where that is
  std::string file;
  Position at;
  std::size_t classes = 0;  ///< how many are below it, so that they are open
};

/// Makes declarations of the classes of `units`, whose order does not matter, and answers with the
/// superclasses that none of them has: the classes below those are open.
///
/// A class from a schema in a folder of its own takes the place of one in the schema folder itself,
/// which adds what the other version lacks. Otherwise of two different definitions of a class the
/// first stays, and a class that inherits from itself is left out with its subclasses. Both are
/// reported.
std::vector<MissingClass> buildClasses(const std::vector<CompilationUnit>& units,
                                       const QualifierTable& qualifiers, ClassTable& classes,
                                       std::vector<substitute::Problem>& problems);

}  // namespace cmpinsp
