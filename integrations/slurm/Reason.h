#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "integrations/slurm/Findings.h"

namespace slurm {

/// The longest reason: `sinfo -R` cuts longer ones off anyway, and it is to be read at a glance.
constexpr std::size_t kLongestReason = 200;

/// What a node is drained for: each part with what was found of it, "DIMM_A2: 3 memory errors,
/// stuck bit 17". Of warnings only where `warnings`. Empty where there is nothing.
std::string reasonFrom(const std::vector<Finding>& findings, bool warnings);

/// As a reason can be: one line of printable ASCII within the length.
std::string asReason(std::string_view text);

}  // namespace slurm
