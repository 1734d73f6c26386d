#pragma once

#include <string>

#include "fleet/Answer.h"

namespace fleet {

/// The whole answer as one line of JSON, harmless on a terminal; docs/fleet.md tells its members.
std::string jsonOf(const Answer& answer);

}  // namespace fleet
