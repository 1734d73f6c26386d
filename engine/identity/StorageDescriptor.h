#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/events/Event.h"

namespace engine {

/// The disk number of "PhysicalDrive7", as Windows names its disks; nothing for other names.
std::optional<unsigned> driveNumber(const std::string& name);

/// The disk of that number that a STORAGE_DEVICE_DESCRIPTOR speaks of; nothing where the bytes are
/// too few for one, or where its media can be taken out. `bytes` is its capacity, 0 for unknown.
std::optional<Part> diskOfDescriptor(unsigned number, std::string_view descriptor,
                                     std::uint64_t bytes);

}  // namespace engine
