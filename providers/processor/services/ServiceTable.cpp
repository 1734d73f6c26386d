#include "providers/processor/services/ServiceTable.h"

#include <cmath>

namespace providers {

namespace {

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

TestFacts serviceFacts(const std::string& kind, const std::string& text, std::uint16_t type,
                       double seconds) {
  constexpr std::uint16_t kFunctional = 2, kStress = 3;
  TestFacts facts;
  facts.family = "DIAGS_Processor";
  facts.name = "DIAGS: " + kind;
  facts.elementName = kind;
  facts.text = text;
  facts.type = {{"CPUTestType", type, false}};
  facts.testTypes = {type == kStressTest ? kStress : kFunctional};
  facts.seconds = static_cast<std::uint32_t>(std::ceil(seconds)) + 1;
  return facts;
}

}  // namespace providers
