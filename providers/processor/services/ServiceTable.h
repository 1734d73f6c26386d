#pragma once

#include <cstdint>
#include <vector>

#include "providers/common/TestFacts.h"
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
TestFacts serviceFacts(const std::string& kind, const std::string& text, std::uint16_t type,
                       double seconds);

constexpr std::uint16_t kStatusTest = 9, kExchangeTest = 15;

}  // namespace providers
