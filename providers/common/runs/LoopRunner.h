#pragma once

#include <cstdint>
#include <functional>

#include "providers/common/Diagnostic.h"

namespace providers {

using Sleep = std::function<void(double seconds)>;

void sleepFor(double seconds);

/// Runs the diagnostic as often as its settings say and sums up what the passes found. `clock`
/// tells microseconds from any beginning. What several passes say in the same words is said once.
Outcome runLoops(Diagnostic& diagnostic, const Device& device, const RunSettings& settings,
                 RunControl& control, const std::function<std::int64_t()>& clock,
                 const Sleep& sleep = sleepFor);

}  // namespace providers
