#pragma once

#include <string_view>

#include "engine/Offer.h"

namespace engine {

/// What the table that a machine's firmware hands to its system (DSP0134) says of the firmware, the
/// system, its boards, processors and memory modules. No host name: the firmware knows none. The
/// table may be any bytes; of each kind, at most 1024 parts are taken.
Identity identityOfSmbios(std::string_view table);

}  // namespace engine
