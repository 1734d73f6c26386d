#include "providers/disk/health/SelfTest.h"

#include "providers/disk/health/Ata.h"
#include "providers/disk/health/Nvme.h"
#include "providers/disk/health/Scsi.h"

namespace providers::disk {

std::unique_ptr<SelfTest> makeSelfTest(const Disk& disk, DriveCommands& commands) {
  if (disk.bus == Bus::Nvme) return makeNvmeSelfTest(commands);
  if (disk.bus == Bus::Ata) return makeAtaSelfTest(commands);
  return makeScsiSelfTest(commands);
}

}  // namespace providers::disk
