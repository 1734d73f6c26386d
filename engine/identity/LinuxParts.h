#pragma once

#include <vector>

#include "engine/events/Event.h"
#include "engine/system/SystemFolder.h"

/// What the system itself knows of its parts. Nothing is asked that would make it ask a device, so
/// that a broken one stops nobody.
namespace engine {

/// One for each socket in use.
std::vector<Part> processorsUnder(const SystemFolder& root);

/// Without those that are made of files, memory or other disks, and those without fixed media.
std::vector<Part> disksUnder(const SystemFolder& root);

/// The network ports that are devices of this machine, each with its own hardware address as its
/// serial number.
std::vector<Part> portsUnder(const SystemFolder& root);

}  // namespace engine
