#pragma once

#include <string_view>

#include "fleet/peers/Robust.h"

namespace fleet {

/// Which side is worse, by the measurement's unit and name: of what is done in a time a low value,
/// of a time that something takes a high one. Of anything else nobody knows.
Worse worseOf(std::string_view measurement, std::string_view unit);

}  // namespace fleet
