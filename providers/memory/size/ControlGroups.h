#pragma once

#include <string>
#include <vector>

namespace providers::memory {

/// The folders, each ended by '/', of the control groups that this process is in and that limit
/// what a controller ("memory", "cpu") shares out: from its own up to the top, of both editions. By
/// the files of the system whose root folder is `root`, "" for the real one.
std::vector<std::string> controlGroupFolders(const std::string& root,
                                             const std::string& controller);

}  // namespace providers::memory
