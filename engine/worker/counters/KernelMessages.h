#pragma once

#include <string>
#include <vector>

#include "engine/worker/counters/Findings.h"

namespace engine::counters {

/// What the kernel's messages say of errors of the machine: machine checks with processor, bank,
/// status and address, errors of disks with their first sector, and whatever else it calls a
/// hardware error. What comes several times is told once.
std::vector<Finding> findingsIn(const std::vector<std::string>& messages);

}  // namespace engine::counters
