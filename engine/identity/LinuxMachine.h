#pragma once

#include <string>

#include "engine/Offer.h"

namespace engine {

/// Who the machine is whose /proc, /sys and /run are in that folder.
Identity machineUnder(const std::string& root);

}  // namespace engine
