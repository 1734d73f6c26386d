#pragma once

#include <string>
#include <vector>

#include "providers/common/values/Measured.h"
#include "providers/disk/health/DriveCommands.h"

namespace providers::disk {

/// Something about a drive that is not as it should be.
struct HealthFinding {
  bool failing = false;  ///< else a warning
  std::string text;      ///< a sentence without its end
};

/// What a drive tells of itself.
struct Health {
  std::string unknown;  ///< why it tells nothing; empty where it does
  std::vector<HealthFinding> findings;
  std::vector<Measured> measured;
};

/// Whether the drive is well, by its own account.
Health readHealth(const Disk& disk, DriveCommands& commands);

/// What the drive has lost over time: blocks that were replaced, or cannot be read.
Health readDefects(const Disk& disk, DriveCommands& commands);

}  // namespace providers::disk
