#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/registration/Registration.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"

namespace cmpinsp {

/// Puts the instances of `units` that are in the default namespace for want of a pragma into the
/// namespace that `placements` give to their file, or to the file that includes it. A file is named
/// by its path below one of `folders`. A name that leads to no file, and a second namespace for one
/// file, are reported.
void placeInstances(const std::vector<InstancePlacement>& placements,
                    const std::vector<std::string>& folders, std::vector<CompilationUnit>& units,
                    std::vector<substitute::Problem>& problems);

}  // namespace cmpinsp
