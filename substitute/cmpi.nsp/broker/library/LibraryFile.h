#pragma once

#include <string>

namespace cmpinsp::broker {

/// What keeps the file `path` (UTF-8) from being a library of this system and machine: it is none
/// at all, or one for another system or processor. Empty where neither is so, or the file cannot be
/// read. A loader tells this badly: for another processor's library it may say that there is no
/// file.
std::string foreignFormat(const std::string& path);

}  // namespace cmpinsp::broker
