#pragma once

#include <string>

namespace cmpinsp {

/// Why others could change a library that the one at `library` needs, directly or not, and that
/// lies beside it, from where the system's loader takes it unasked, or why that cannot be found
/// out. Empty when they cannot. The path is UTF-8, absolute, with symbolic links resolved.
std::string whyOthersCanChangeNeeds(const std::string& library);

}  // namespace cmpinsp
