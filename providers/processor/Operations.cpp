#include "providers/processor/Operations.h"

namespace providers {

namespace {

std::vector<Operation> makeOperations() {
  std::vector<Operation> operations{{"Integer multiplication", multiplyIntegers},
                                    {"Integer division", divideIntegers},
                                    {"Bit rotation", rotateBits},
                                    {"Floating-point arithmetic", calculateExactly},
                                    {"Floating-point rounding", roundProducts},
                                    {"Floating-point iteration", iterateFloats},
                                    {"Vector arithmetic", calculateVectors},
                                    {"Checksum", computeChecksums},
                                    {"Prime sieve", sievePrimes},
                                    {"Matrix product", multiplyMatrices},
                                    {"Cache walk", walkCaches}};
  if (hasWideVectors()) {
    operations.push_back({"Wide vector arithmetic", calculateWideVectors});
    operations.push_back({"Fused multiply-add", fuseMultiplyAdd});
  }
  return operations;
}

}  // namespace

const std::vector<Operation>& processorOperations() {
  static const std::vector<Operation> operations = makeOperations();
  return operations;
}

}  // namespace providers
