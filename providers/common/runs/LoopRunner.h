#pragma once

#include <cstdint>
#include <functional>

#include "providers/common/Diagnostic.h"

namespace providers {

/// Runs the diagnostic as often as its settings say and sums up what the passes found. `clock`
/// tells microseconds from any beginning.
Outcome runLoops(Diagnostic& diagnostic, const Device& device, const RunSettings& settings,
                 RunControl& control, const std::function<std::int64_t()>& clock);

}  // namespace providers
