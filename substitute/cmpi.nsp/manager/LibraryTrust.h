#pragma once

#include <string>

namespace cmpinsp {

/// Why the provider library at `libraryPath` may not be loaded; empty when it may. Both paths are
/// UTF-8.
///
/// A library's code runs with the rights of whoever runs the command, so nobody else may be able to
/// put it there: it is a file in `providersFolder` itself, symbolic links resolved, and neither it
/// nor a folder above it can be written by anyone but root and the user who runs the command; in a
/// sticky folder such as /tmp everybody can only write beside it. On Windows, where the access
/// lists of the installation folder are its installer's affair, only the place is checked.
std::string refusalToLoad(const std::string& libraryPath, const std::string& providersFolder);

}  // namespace cmpinsp
