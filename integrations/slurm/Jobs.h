#pragma once

#include <string>

namespace slurm {

/// Whether a job's step is on this machine: each has its `slurmstepd`. The folder is `/proc`.
bool isJobRunning(const std::string& processes);

}  // namespace slurm
