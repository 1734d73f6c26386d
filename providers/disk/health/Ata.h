#pragma once

#include <memory>

#include "providers/disk/health/Health.h"
#include "providers/disk/health/SelfTest.h"

namespace providers::disk {

Health ataHealth(DriveCommands& commands);
Health ataDefects(DriveCommands& commands);
std::unique_ptr<SelfTest> makeAtaSelfTest(DriveCommands& commands);

}  // namespace providers::disk
