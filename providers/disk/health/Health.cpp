#include "providers/disk/health/Health.h"

#include "providers/disk/health/Ata.h"
#include "providers/disk/health/Nvme.h"
#include "providers/disk/health/Scsi.h"

namespace providers::disk {

Health readHealth(const Disk& disk, DriveCommands& commands) {
  Health health = disk.bus == Bus::Nvme  ? nvmeHealth(commands)
                  : disk.bus == Bus::Ata ? ataHealth(commands)
                                         : scsiHealth(commands);
  const auto predicted = commands.systemPredictsFailure();
  if (predicted) health.unknown.clear();
  if (predicted.value_or(false))
    health.findings.push_back({true, "The drive tells the system that it is going to fail"});
  return health;
}

Health readDefects(const Disk& disk, DriveCommands& commands) {
  return disk.bus == Bus::Nvme  ? nvmeDefects(commands)
         : disk.bus == Bus::Ata ? ataDefects(commands)
                                : scsiDefects(commands);
}

}  // namespace providers::disk
