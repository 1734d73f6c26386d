#pragma once

#include <string>

namespace cmpinsp {

/// A provider library as it was found.
struct ExaminedLibrary {
  std::string path;     ///< of the file, symbolic links resolved: what may be loaded
  std::string refusal;  ///< why it may not be loaded; empty when it may
};

/// Examines the provider library at `libraryPath`. All paths are UTF-8.
///
/// A library's code runs with the rights of whoever runs the command, so nobody else may be able to
/// put it there: it is a file in `providersFolder` itself, symbolic links resolved, and neither it
/// nor a folder above it can be changed by others (`whyOthersCanChange`), nor a library beside it
/// that it needs. The links themselves are
/// not examined, so that they must not be followed again.
ExaminedLibrary examineLibrary(const std::string& libraryPath, const std::string& providersFolder);

}  // namespace cmpinsp
