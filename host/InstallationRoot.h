#pragma once

#include <stdexcept>
#include <string>

namespace host {

/// There is nothing to work with: no installation, or one without its worker.
class InstallationError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Where an installation directory may be named; texts are UTF-8 and may be empty.
struct RootSources {
  std::string option;               ///< --root
  std::string environment;          ///< DIAGS_ROOT
  std::string executableDirectory;  ///< where the program lies
};

/// The installation directory, without a separator at its end: the option's, else the
/// environment's, else the first of `.`, `../installation`, `../lib/diagsrunner` and `..` of the
/// program's directory that holds a `schema` folder. Throws `InstallationError` when the one named
/// is no directory, or when none is found.
std::string findInstallationRoot(const RootSources& sources);

/// The worker's program: `diags-worker` in the program's directory, else in `../lib/diagsrunner` of
/// it. Throws `InstallationError` that names both places when there is none.
std::string findWorker(const std::string& executableDirectory);

}  // namespace host
