#pragma once

#include <vector>

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// Adds to `qualifiers` the names that `others` have for values and bits beyond theirs. Names that
/// are there stay. True when there were any.
bool completeNames(std::vector<vorcore::Qualifier>& qualifiers,
                   const std::vector<vorcore::Qualifier>& others);

}  // namespace cmpinsp
