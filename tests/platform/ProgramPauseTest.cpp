#include <gtest/gtest.h>

#include <vector>

#include "platform/Platform.h"
#include "platform/ProgramPause.h"

namespace {

std::vector<unsigned int>& pauses() {
  static std::vector<unsigned int> all;
  return all;
}

}  // namespace

void diagsrunner_pause(unsigned int milliseconds) { pauses().push_back(milliseconds); }

namespace diagsrunner::platform {
namespace {

// Catches a sleep that looks for another name, or a program that does not export its own: this
// would take a day.
TEST(SleepOfAProgramWithItsOwnPause, IsThatPause) {
  sleepMilliseconds(86'400'000);
  EXPECT_EQ(pauses(), std::vector<unsigned int>{86'400'000});
}

}  // namespace
}  // namespace diagsrunner::platform
