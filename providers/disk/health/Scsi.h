#pragma once

#include <memory>

#include "providers/disk/health/Health.h"
#include "providers/disk/health/SelfTest.h"

namespace providers::disk {

Health scsiHealth(DriveCommands& commands);
Health scsiDefects(DriveCommands& commands);
std::unique_ptr<SelfTest> makeScsiSelfTest(DriveCommands& commands);

}  // namespace providers::disk
