#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"

namespace cmpinsp {

/// Parses the MOF text `source` of the file `file`. A declaration with a fault is reported and left
/// out; the others are kept. `nameSpace` is in force until a pragma names another one.
CompilationUnit parseMof(const std::string& file, std::string_view source,
                         std::vector<substitute::Problem>& problems,
                         const std::string& nameSpace = std::string());

/// Parses `source` as one instance declaration, the form in which an embedded instance is written
/// into a string. Throws `TVORException` (invalid parameter) with line and column otherwise.
InstanceSyntax parseInstance(std::string_view source);

}  // namespace cmpinsp
