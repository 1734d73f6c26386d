#include "providers/disk/finding/MachineDisks.h"
#include "providers/disk/finding/SysfsDisks.h"

namespace providers::disk {

std::vector<Disk> findMachineDisks() { return findSysfsDisks("/sys"); }

}  // namespace providers::disk
