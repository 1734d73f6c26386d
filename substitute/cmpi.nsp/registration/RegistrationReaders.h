#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/registration/Registration.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"

namespace cmpinsp {

/// Reads a `.registration` file: "class namespace provider library type..." a line, or "file
/// namespace instances", "#" comments. A faulty line is reported and left out.
void readRegistrationLines(const std::string& file, std::string_view text,
                           std::vector<Registration>& registrations,
                           std::vector<InstancePlacement>& placements,
                           std::vector<substitute::Problem>& problems);

/// Reads a `.reg` file: a "[Class]" section with "provider:", "location:", "type:" and "namespace:"
/// lines for each class. A section that lacks one of them is reported and left out; sections in
/// dollar signs, which are a server's own providers, are passed over.
void readRegistrationSections(const std::string& file, std::string_view text,
                              std::vector<Registration>& registrations,
                              std::vector<substitute::Problem>& problems);

/// Reads the instances of PG_ProviderModule, PG_Provider and PG_ProviderCapabilities among those of
/// `units`, in whatever order and files they are.
void readRegistrationInstances(const std::vector<CompilationUnit>& units,
                               std::vector<Registration>& registrations,
                               std::vector<substitute::Problem>& problems);

/// True for the classes that `readRegistrationInstances` reads.
bool isRegistrationClass(const std::string& className);

}  // namespace cmpinsp
