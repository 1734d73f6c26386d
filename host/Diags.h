#pragma once

#include <string>
#include <vector>

#include "host/ExitStatus.h"

namespace host {

/// The whole command: reads `arguments` (without the program's name), brings the framework up and
/// carries the command out. Every error becomes one line on standard error and a status.
ExitStatus runDiags(const std::vector<std::string>& arguments) noexcept;

}  // namespace host
