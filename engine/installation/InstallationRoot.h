#pragma once

#include <stdexcept>
#include <string>

namespace engine {

/// There is nothing to work with: no installation, or one without its worker.
class InstallationError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Where an installation directory may be named; texts are UTF-8 and may be empty.
struct RootSources {
  std::string option;            ///< --root
  std::string environment;       ///< DIAGS_ROOT
  std::string programDirectory;  ///< where the program or the library lies that asks
};

/// The installation directory, without a separator at its end: the option's, else the
/// environment's, else the first of `.`, `../installation`, `../lib/diagsrunner` and `..` of the
/// program's directory that holds a `schema` folder. Throws `InstallationError` when the one named
/// is no directory or holds no such folder, or when none is found.
std::string findInstallationRoot(const RootSources& sources);

/// The worker's program: `diags-worker` in the program's directory, else in `../lib/diagsrunner` or
/// `../bin` of it. Throws `InstallationError` that names all places when there is none.
std::string findWorker(const std::string& programDirectory);

/// The path itself. Throws `InstallationError` where no file is there.
std::string namedWorker(const std::string& path);

}  // namespace engine
