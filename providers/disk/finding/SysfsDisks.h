#pragma once

#include <string>
#include <vector>

#include "providers/disk/finding/Disk.h"

namespace providers::disk {

/// The disks below `sys`, which is "/sys" but in tests, in the order of their names: sda before sdb
/// before sdaa. What cannot be read is left empty; a disk without a size is none.
std::vector<Disk> findSysfsDisks(const std::string& sys);

}  // namespace providers::disk
