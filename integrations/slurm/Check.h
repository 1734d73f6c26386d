#pragma once

#include "integrations/slurm/Clock.h"
#include "integrations/slurm/Controller.h"
#include "integrations/slurm/Log.h"
#include "integrations/slurm/Settings.h"

namespace slurm {

/// What Slurm is told by the exit status.
enum Status : int { kGood = 0, kFaulty = 1, kUsage = 2, kUnfinished = 3 };

/// Slurm takes whatever is not 0 from a prolog or an epilog for a fault of the node: what is none,
/// such as a slip in a configuration that all nodes have, must not drain them all.
int statusFor(Verb verb, Status status);

/// Tests the node where there is something to do, and drains it where a part is faulty. Throws
/// `SettingError`.
Status check(Verb verb, const Settings& settings, const Surroundings& surroundings,
             const Clock& clock, const Log& log);

}  // namespace slurm
