#pragma once

#include <cstdint>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/processor/operations/Operation.h"

namespace providers {

/// A test of calculations: one of the standard's kinds of processor test.
struct CalculationService {
  const char* name;
  const char* text;
  std::uint16_t type;       ///< CPUTestType
  std::vector<Unit> units;  ///< whose operations it does
  double seconds;
};

const std::vector<CalculationService>& calculationServices();

/// What all of the family's descriptions have in common. `kind` is the name without "DIAGS: ".
DiagnosticDescription describeService(const std::string& kind, const std::string& text,
                                      std::uint16_t type, double seconds);

/// Adds to a description that the share of what is done, the random numbers and the end at the
/// first error can be set.
void honourCalculationSettings(DiagnosticDescription& description);

constexpr std::uint16_t kStatusTest = 9, kExchangeTest = 15;

}  // namespace providers
