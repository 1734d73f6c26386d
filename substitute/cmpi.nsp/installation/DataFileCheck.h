#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"

namespace cmpinsp {

/// Checks the runner's three data files in `folder` (UTF-8): each is well-formed XML, with elements
/// and attributes that the runner reads, where it reads them, and holds nothing that the runner
/// reads in vain or not at all. The runner itself passes over what it does not know; this is for
/// whoever wrote the file. A file that is missing is no fault.
std::vector<substitute::Problem> checkDataFiles(const std::string& folder);

}  // namespace cmpinsp
