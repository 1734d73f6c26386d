#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"

namespace cmpinsp {

/// What others than root and the user who runs the command could change (`PathRights`) of the
/// schema, registration and data files of the installation at `root` (UTF-8, absolute), of their
/// folders and of what is above; each place once. `schemaFiles` are those that were read: a file
/// that another one includes may have any name. Libraries are examined before they are loaded.
std::vector<substitute::Problem> findWhatOthersCanChange(
    const std::string& root, const std::vector<std::string>& schemaFiles);

/// What whoever runs the command as root is to know of the installation, a line each: that it is
/// somebody else's, by name, and that others could change it. Empty for another user.
std::vector<std::string> warningsForRoot(const std::string& root,
                                         const std::vector<std::string>& schemaFiles);

/// Whether the process has the rights of root, or on Windows of an administrator.
bool runsAsRoot();

/// Whose the folder is, as "NAME (id NUMBER)"; empty when it is root's, and on Windows, where
/// rights go by groups.
std::string ownerBesidesRoot(const std::string& folder);

}  // namespace cmpinsp
