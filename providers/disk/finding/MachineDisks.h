#pragma once

#include <vector>

#include "providers/disk/finding/Disk.h"

namespace providers::disk {

/// The disks of this machine.
std::vector<Disk> findMachineDisks();

}  // namespace providers::disk
