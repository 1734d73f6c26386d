#pragma once

#include <string>

namespace libdiags {

/// The folder that this library was loaded from, in UTF-8; empty where the system does not tell.
std::string folderOfThisLibrary();

}  // namespace libdiags
