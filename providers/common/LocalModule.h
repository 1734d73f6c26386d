#pragma once

#include <string>

namespace providers {

/// A module beside the provider's library, which is loaded when it is needed and stays.
struct LocalModule {
  void* handle = nullptr;  ///< for `dlsym`; null when there is a problem
  std::string problem;     ///< of one line, which names the module
};

/// Loads `lib<name>.so` of the folder, an absolute path, unless others than root and the user may
/// have written it: it, its folder and those above are looked at.
LocalModule loadLocalModule(const std::string& folder, const std::string& name);

/// The folder of the library that has this address in it; empty when that is not known.
std::string folderOfLibrary(const void* address);

}  // namespace providers
