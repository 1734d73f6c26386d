#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/registration/Registration.h"

namespace cmpinsp {

/// Reads the `.registration` and `.reg` files of `folder` (UTF-8), in name order. A folder that is
/// missing is an empty one; one that cannot be listed is added to `problems`.
std::vector<Registration> readRegistrationFolder(const std::string& folder,
                                                 std::vector<substitute::Problem>& problems);

}  // namespace cmpinsp
