#pragma once

#include <string>

#include "providers/processor/engine/ExchangeEngine.h"
#include "providers/processor/engine/ProcessorEngine.h"

namespace providers {

/// What a fault is of: "core 2 of processor 0".
std::string partText(const CalculationFault& finding);

/// Where, what, with which operands, how it went when it was tried again, and what to do: some
/// lines.
std::string faultText(const CalculationFault& finding);
std::string faultText(const ExchangeFault& fault);

/// What to replace, in one sentence.
std::string correctiveAction(const CalculationFault& finding);
std::string correctiveAction(const ExchangeFault& fault);

}  // namespace providers
