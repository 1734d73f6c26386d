#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/registration/Registration.h"

namespace cmpinsp {

/// What the registration files of a folder say.
struct FolderRegistrations {
  std::vector<Registration> classes;
  std::vector<InstancePlacement> placements;
};

/// Reads the `.registration` and `.reg` files of `folder` (UTF-8), in name order. A folder that is
/// missing is an empty one; one that cannot be listed is added to `problems`.
FolderRegistrations readRegistrationFolder(const std::string& folder,
                                           std::vector<substitute::Problem>& problems);

}  // namespace cmpinsp
