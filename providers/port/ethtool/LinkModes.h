#pragma once

#include <string>

#include "providers/port/ethtool/EthtoolDoor.h"
#include "providers/port/finding/Port.h"

namespace providers::port {

/// What the driver tells of the modes of both ends.
LinkModes readLinkModes(EthtoolDoor& door, const std::string& port);

}  // namespace providers::port
