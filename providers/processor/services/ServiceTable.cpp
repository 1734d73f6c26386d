#include "providers/processor/services/ServiceTable.h"

#include <cmath>

namespace providers {

namespace {

using Uint16s = std::vector<std::uint16_t>;

constexpr std::uint16_t kInstructionTest = 3, kFloatTest = 4, kWidthTest = 5, kStressTest = 13,
                        kCacheTest = 14;

}  // namespace

const std::vector<CalculationService>& calculationServices() {
  static const std::vector<CalculationService> services{
      {"Processor Instruction",
       "Integer, vector, checksum and cipher instructions on every thread, compared with answers "
       "that "
       "were got by other instructions.",
       kInstructionTest,
       {Unit::Integer, Unit::Cipher},
       2},
      {"Processor FPU Instruction",
       "Floating-point instructions of all formats and vectors on every thread, compared with "
       "answers "
       "that were got by integers.",
       kFloatTest,
       {Unit::Float},
       2},
      {"Processor Mixed Instruction Width",
       "8 to 512 bits of the same data, in registers and vectors, on every thread.",
       kWidthTest,
       {Unit::Width},
       1},
      {"Processor Cache",
       "Data of the size of each cache, changed and read back in scattered order on every thread.",
       kCacheTest,
       {Unit::Cache},
       2},
      {"Processor Stress",
       "All operations on all threads at once, and matrix, compression, hash and cipher programs.",
       kStressTest,
       {Unit::Integer, Unit::Cipher, Unit::Float, Unit::Width, Unit::Cache, Unit::Kernel},
       7}};
  return services;
}

DiagnosticDescription describeService(const std::string& kind, const std::string& text,
                                      std::uint16_t type, double seconds) {
  constexpr std::uint16_t kFunctional = 2, kStress = 3;
  DiagnosticDescription description;
  description.family = "DIAGS_Processor";
  description.name = "DIAGS: " + kind;
  description.elementName = kind;
  description.text = text;
  description.testProperties = {
      {"CPUTestType", type, false},
      {"Characteristics", Uint16s{}, false},
      {"TestTypes", Uint16s{type == kStressTest ? kStress : kFunctional}, false}};
  description.capabilities = {{"SupportedLogOptions", Uint16s{2, 5, 7, 8}, false},
                              {"SupportedLogStorage", Uint16s{0x8000}, false},
                              {"SupportedLoopControl", Uint16s{2, 3, 4, 5}, false}};
  description.defaultSettings = {{"NonDestructive", true, false}};
  description.estimatedSeconds = static_cast<std::uint32_t>(std::ceil(seconds)) + 1;
  return description;
}

void honourCalculationSettings(DiagnosticDescription& description) {
  description.capabilities.merge({{"SupportedServiceModes", Uint16s{2, 3, 4, 5}, false},
                                  {"SupportedExecutionControls", Uint16s{3, 5}, false},
                                  {"Seed", true, false}});
  description.defaultSettings.merge({{"HaltOnError", false, false},
                                     {"QuickMode", false, false},
                                     {"PercentOfTestCoverage", std::uint8_t{100}, false},
                                     {"Seed", {}, false}});
}

}  // namespace providers
