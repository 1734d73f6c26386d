#pragma once

#include <cstdio>
#include <string>

namespace diagsrunner::platform {

/// Opens the file for reading in text mode; null when that fails. The path is UTF-8; outside
/// Windows, its part `\kfr\data\` is read with "/".
std::FILE* openText(const std::string& path);

}  // namespace diagsrunner::platform
