#pragma once

#include <memory>

#include "providers/disk/health/Health.h"
#include "providers/disk/health/SelfTest.h"

namespace providers::disk {

Health nvmeHealth(DriveCommands& commands);
Health nvmeDefects(DriveCommands& commands);
std::unique_ptr<SelfTest> makeNvmeSelfTest(DriveCommands& commands);

}  // namespace providers::disk
