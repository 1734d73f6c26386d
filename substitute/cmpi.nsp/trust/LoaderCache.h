#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/trust/Bytes.h"

namespace cmpinsp {

/// The files that the system's list of libraries has for that name, for whatever processor, from
/// the content of /etc/ld.so.cache. Content of an unknown form has none.
std::vector<std::string> cachedFiles(const std::string& content, const std::string& name);

}  // namespace cmpinsp
