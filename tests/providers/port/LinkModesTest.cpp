#include <gtest/gtest.h>

#include "providers/port/ethtool/LinkModes.h"
#include "tests/providers/port/ScriptedDriver.h"

namespace providers::port {
namespace {

/// The best mode that both ends of the link have, as the test takes it of the driver.
LinkMode commonOf(DriverScript script) {
  ScriptedDriver driver(script);
  return readLinkModes(driver, "eth0").common.value_or(LinkMode{});
}

TEST(LinkModes, TheBestOfBothEndsIsThePartnersWhereThatCanLess) {
  DriverScript script;
  script.supported = script.offered = {0x3F, 0, 0};
  script.partner = {0x2F, 0, 0};
  EXPECT_EQ(commonOf(script).megabits, 1000U);
  script.partner = {0x0F, 0, 0};
  EXPECT_EQ(commonOf(script).megabits, 100U);
  EXPECT_TRUE(commonOf(script).full);
}

TEST(LinkModes, BeyondTheFirstWordOfBitsCount) {
  DriverScript script;
  script.supported = script.offered = script.partner = {0, 1U << 7, 1U << 5};
  EXPECT_EQ(commonOf(script).megabits, 400000U);
}

TEST(LinkModes, APartnerThatTellsNothingLeavesThemOpen) {
  DriverScript script;
  script.supported = script.offered = {0x3F, 0, 0};
  script.partner = {0, 0, 0};
  EXPECT_EQ(commonOf(script).megabits, 0U);
  EXPECT_EQ(commonOf({}).megabits, 0U);
}

}  // namespace
}  // namespace providers::port
