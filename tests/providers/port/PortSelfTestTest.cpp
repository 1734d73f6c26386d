#include <gtest/gtest.h>

#include "tests/providers/port/DriverPort.h"

namespace providers::port {
namespace {

TEST(PortSelfTest, IsOfferedWhereTheDriverHasTests) {
  DriverPort port;
  EXPECT_EQ(port.selfTest(TestMode::Online).devices().size(), 1U);
  port.port.selfTests = false;
  EXPECT_TRUE(port.selfTest(TestMode::Online).devices().empty());
  EXPECT_TRUE(port.selfTest(TestMode::Offline).devices().empty());
  EXPECT_EQ(port.statusTest().devices().at(0).name, "e1000e Network Port");
}

TEST(PortSelfTest, OnlyTheOneThatCutsThePortOffIsRisky) {
  DriverPort port;
  using Uint16s = std::vector<std::uint16_t>;
  const auto characteristics = [](const Diagnostic& test) {
    return std::get<Uint16s>(test.description().testProperties.get("Characteristics"));
  };
  EXPECT_EQ(characteristics(port.selfTest(TestMode::Online)), Uint16s{});
  EXPECT_EQ(characteristics(port.selfTest(TestMode::Offline)), Uint16s{5});
}

TEST(PortSelfTest, AsksTheDriverForTheTestsOfItsKind) {
  DriverPort port;
  const Outcome outcome = port.self();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "The driver found no fault in 2 tests");
  port.self(TestMode::Offline);
  EXPECT_EQ(port.driver.testFlags, (std::vector<std::uint32_t>{0, ETH_TEST_FL_OFFLINE}));
}

TEST(PortSelfTest, NamesTheTestsThatFail) {
  DriverPort port;
  port.driver.testValues = {4, 0};
  port.driver.testsFailed = true;
  const Outcome outcome = port.self(TestMode::Offline);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "found faults: Register test (offline) (4)\n")) << outcome.text;
  EXPECT_TRUE(tells(outcome, "  Link test (on/offline): no fault\n"));
  EXPECT_EQ(measuredIn(outcome, "FailedTests"), 1);
  EXPECT_EQ(outcome.errors.at(0).code, "Adapter self-test");
  EXPECT_NE(outcome.notes[0].correctiveAction.find("replace the adapter in slot 3"),
            std::string::npos);
}

TEST(PortSelfTest, AValueWithoutTheFlagOrTheFlagAloneIsAFaultToo) {
  DriverPort port;
  port.driver.testValues = {0, 1};
  EXPECT_EQ(port.self().state, CompletionState::Failed);
  port.driver.testValues = {0, 0};
  port.driver.testsFailed = true;
  EXPECT_TRUE(tells(port.self(), "it does not tell in which of its tests"));
}

TEST(PortSelfTest, TestsWithoutOrWithHostileNamesAreNumberedOrCleaned) {
  DriverPort port;
  port.driver.testNames = {"", "\x1b[2Jx", std::string(40, 'y')};
  port.driver.testValues = {1, 1, 1};
  EXPECT_TRUE(
      tells(port.self(), "found faults: test 1 (1), [2Jx (1), " + std::string(32, 'y') + " (1)\n"));
}

TEST(PortSelfTest, ADriverThatHasMoreTestsThanItSaidHarmsNothing) {
  DriverPort port;
  port.driver.toldTests = 1;
  port.driver.testNames.assign(4000, "Memory test");
  port.driver.testValues.assign(4000, 0);
  port.driver.testValues.back() = 1;
  EXPECT_TRUE(tells(port.self(), "found faults: test 4000 (1)\n"));
}

TEST(PortSelfTest, ADriverThatSaysItHasNumberlessTestsIsNotAsked) {
  DriverPort port;
  port.driver.toldTests = 0xFFFFFFFF;
  EXPECT_EQ(port.self().state, CompletionState::Incomplete);
  EXPECT_TRUE(port.driver.testFlags.empty());
}

TEST(PortSelfTest, NoTestsAreNoPass) {
  DriverPort port;
  port.driver.testValues.clear();
  EXPECT_EQ(port.self().state, CompletionState::Incomplete);
}

TEST(PortSelfTest, IsNotBegunWhenTheRunIsToEnd) {
  DriverPort port;
  port.control.stopAfter(0);
  const Outcome outcome = port.self(TestMode::Offline);
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  EXPECT_TRUE(port.driver.testFlags.empty());
}

TEST(PortSelfTest, AStopWhileTheLinkIsAwaitedIsNoPass) {
  DriverPort port;
  port.driver.duringTest = [&port] { port.state.carrier = false; };
  port.control.stopAfter(3);
  const Outcome outcome = port.self(TestMode::Offline);
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  EXPECT_TRUE(tells(outcome, "no fault\n")) << "the driver's tests had ended";
  EXPECT_LT(port.now, 5);
}

TEST(PortSelfTest, APortThatIsGoneAfterItFailed) {
  DriverPort port;
  port.driver.duringTest = [&port] { port.state = {}; };
  const Outcome outcome = port.self(TestMode::Offline);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "eth0 (e1000e, slot 3) was there before the test, and is no more"));
  EXPECT_EQ(outcome.notes.at(0).part.location, "3");
}

TEST(PortSelfTest, WithoutTheRightIsIncompleteAndSaysWhich) {
  DriverPort port;
  port.driver.testProblem = EPERM;
  const Outcome outcome = port.self();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "CAP_NET_ADMIN"));
  port.driver.testProblem = EOPNOTSUPP;
  EXPECT_TRUE(tells(port.self(), "does not test it: Operation not supported"));
  port.driver.testNames.clear();
  EXPECT_EQ(port.self().state, CompletionState::Incomplete);
}

TEST(PortSelfTest, OfAPortThatIsSwitchedOffIsMadeOfflineAlone) {
  DriverPort port;
  port.state.on = false;
  EXPECT_EQ(port.self().state, CompletionState::Incomplete);
  EXPECT_TRUE(port.driver.testFlags.empty());
  EXPECT_EQ(port.self(TestMode::Offline).state, CompletionState::Ok);
}

TEST(PortSelfTest, WaitsForTheLinkThatItTookAway) {
  DriverPort port;
  port.driver.duringTest = [&port] { port.state.carrier = false; };
  port.whileWaiting = [&port] { port.state.carrier = port.now > 3; };
  EXPECT_EQ(port.self(TestMode::Offline).state, CompletionState::Ok);
  EXPECT_NEAR(port.now, 3.5, 0.01);
  port.whileWaiting = [] {};
  const Outcome outcome = port.self(TestMode::Offline);
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "had a link before the test, and none 15 s after it"));
}

}  // namespace
}  // namespace providers::port
