#pragma once

#include <string>
#include <vector>

#include "providers/processor/engine/ExchangeEngine.h"
#include "providers/processor/engine/ProcessorEngine.h"
#include "providers/processor/kernels/Kernels.h"

namespace providers {

/// What a run found, as a record has it. Of the kernels, those that could not be used are told.
Outcome calculationOutcome(const ProcessorReport& report, const CpuPackage& package,
                           std::uint64_t seed, const Kernels& kernels);
Outcome exchangeOutcome(const ExchangeReport& report, const CpuPackage& package);

}  // namespace providers
