#pragma once

#include <string>
#include <vector>

#include "providers/processor/engine/ExchangeEngine.h"
#include "providers/processor/engine/ProcessorEngine.h"

namespace providers {

/// What a run found, as a record has it. `missing` are the kernels that could not be used.
Outcome calculationOutcome(const ProcessorReport& report, const CpuPackage& package,
                           std::uint64_t seed, const std::vector<std::string>& missing);
Outcome exchangeOutcome(const ExchangeReport& report, const CpuPackage& package);

}  // namespace providers
