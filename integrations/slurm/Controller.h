#pragma once

#include <string>

#include "integrations/slurm/Budget.h"
#include "integrations/slurm/Clock.h"
#include "integrations/slurm/Log.h"
#include "integrations/slurm/Settings.h"

namespace slurm {

/// What this process was given about Slurm by its daemon.
struct Surroundings {
  std::string node;
  std::string slurmConf;
};

/// Drains the node, unless it is drained; it is never resumed. Says what it did. False where the
/// controller could not be told.
bool drain(const Settings& settings, const Surroundings& surroundings, const std::string& reason,
           const Clock& clock, const Log& log);

}  // namespace slurm
