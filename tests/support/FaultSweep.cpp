#include "tests/support/FaultSweep.h"

#include <stdexcept>

namespace support {

namespace {
constexpr int kLongestOperation = 100000;
}  // namespace

std::string describe(const FaultPoint& point) {
  return "call " + std::to_string(point.call) + ", " + point.callText + ": " + nameOf(point.fault);
}

void expectNothingAlive(const FaultPoint& point) {
  EXPECT_EQ(LiveObject::count(), 0) << "handles kept after " << describe(point);
}

void checkSweepLength(int call) {
  if (call > kLongestOperation) {
    throw std::logic_error("the operation under sweep never runs through");
  }
}

}  // namespace support
