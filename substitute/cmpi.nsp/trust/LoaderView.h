#pragma once

#include <functional>
#include <string>
#include <vector>

namespace cmpinsp {

/// Where the loader of this process looks for what a library needs, apart from what the libraries
/// say themselves. All folders are as the loader took them; they may be missing.
struct LoaderView {
  /// Whether the process has a library of that name, no path, already: the loader takes that one.
  std::function<bool(const std::string&)> isLoaded;
  /// The files of that name in the system's list of libraries.
  std::function<std::vector<std::string>(const std::string&)> cached;
  /// DT_RPATH of what is loaded already: some of it counts for all that is loaded later.
  std::vector<std::string> processFolders;
  std::vector<std::string> environmentFolders;  ///< LD_LIBRARY_PATH, as it was at the start
  std::vector<std::string> defaultFolders;
  std::vector<std::string> platforms;  ///< what $PLATFORM may stand for
};

/// That of this process. What was found loaded stays loaded until the process ends.
LoaderView viewOfThisProcess();

}  // namespace cmpinsp
