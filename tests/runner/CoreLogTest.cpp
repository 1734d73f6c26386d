#include <gtest/gtest.h>

#include "runner/CoreLog.h"
#include "tests/support/World.h"

namespace diagsrunner {
namespace {

TEST(CoreLog, TracesAtLevelThreeAndReportsErrorsAtLevelZero) {
  support::World world;
  logTrace("a trace");
  logError("an error");
  EXPECT_EQ(world.journal.all(), "log 3 \"a trace\"\nlog 0 \"an error\"\n");
}

TEST(CoreLog, JoinsTheTextsToOneLine) {
  support::World world;
  const std::string name = "CIM_Disk";
  logTrace("Looking for ", name, " with ", std::string_view("cmpi"));
  EXPECT_EQ(world.journal.log(), "log 3 \"Looking for CIM_Disk with cmpi\"\n");
}

TEST(CoreLog, WritesNothingWithoutALogger) {
  support::World world;
  world.logger.isAbsent = true;
  logTrace("a trace");
  logError("an error");
  EXPECT_EQ(world.journal.all(), "");
}

}  // namespace
}  // namespace diagsrunner
