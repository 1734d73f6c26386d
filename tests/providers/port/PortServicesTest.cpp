#include <gtest/gtest.h>

#include <deque>
#include <tuple>

#include "providers/port/services/PingDiagnostic.h"
#include "providers/port/services/SelfTestDiagnostic.h"
#include "providers/port/services/StatusDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/port/ScriptedDriver.h"

namespace providers::port {
namespace {

bool tells(const Outcome& outcome, const std::string& text) {
  return outcome.text.find(text) != std::string::npos;
}

double measuredIn(const Outcome& outcome, const std::string& name) {
  for (const Measured& one : outcome.measured)
    if (one.name == name) return one.value;
  ADD_FAILURE() << name << " was not measured";
  return -1;
}

/// A good port, and what changes in it while a test waits.
struct OnePort {
  OnePort() {
    port.name = port.id = "eth0";
    port.driver = "e1000e";
    port.slot = "3";
    port.selfTests = true;
    state.present = state.on = true;
    state.carrier = true;
    state.megabits = 1000;
    state.duplex = Duplex::Full;
    state.linkLosses = 0;
    state.linkChanges = 2;
    state.errors = {{"rx_errors", 5}, {"rx_crc_errors", 5}, {"tx_errors", 0}};
    driver.testNames = {"Register test  (offline)", "Link test   (on/offline)"};
    driver.testValues = {0, 0};
  }
  FindPorts finder() {
    return [this] { return std::vector<Port>{port}; };
  }
  ReadPort reader() {
    return [this](const Port&) { return state; };
  }
  OpenEthtool opener() {
    return [this] { return std::make_unique<ScriptedDriver>(driver); };
  }
  Waiting waiting() {
    return {[this] { return now; },
            [this](double seconds) {
              now += seconds;
              whileWaiting();
            }};
  }
  StatusDiagnostic statusTest() {
    return StatusDiagnostic({finder(), reader(), opener(), waiting()});
  }
  SelfTestDiagnostic selfTest(TestMode mode) {
    return SelfTestDiagnostic({finder(), reader(), opener(), waiting()}, mode);
  }
  Outcome status() {
    StatusDiagnostic test = statusTest();
    return test.run(test.devices().at(0), {}, control);
  }
  Outcome self(TestMode mode = TestMode::Online) {
    SelfTestDiagnostic test = selfTest(mode);
    return test.run(test.devices().at(0), {}, control);
  }

  Port port;
  PortState state;
  DriverScript driver;
  double now = 0;
  std::function<void()> whileWaiting = [] {};
  FakeControl control;
};

TEST(PortStatus, OfAGoodPortFindsNothing) {
  OnePort port;
  const Outcome outcome = port.status();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(outcome.summary, "Link, 1000 Mbit/s, full duplex");
  EXPECT_TRUE(outcome.notes.empty());
  EXPECT_EQ(measuredIn(outcome, "NewErrors"), 0);
  EXPECT_EQ(measuredIn(outcome, "Speed"), 1000);
  EXPECT_NEAR(port.now, 5, 0.11);
  EXPECT_EQ(port.control.fractions().back(), 1);
}

TEST(PortStatus, ErrorsOfEarlierDaysAreToldAndNotHeldAgainstThePort) {
  OnePort port;
  EXPECT_TRUE(tells(port.status(), "since the system's start: rx_crc_errors 5, rx_errors 5\n"));
}

TEST(PortStatus, CountsAPacketOnceThatIsCountedByItsKindToo) {
  OnePort port;
  port.whileWaiting = [&port] {
    port.state.errors["rx_errors"] = 5 + 12;
    port.state.errors["rx_crc_errors"] = 5 + 12;
    port.state.errors["tx_carrier_errors"] = 3;
  };
  port.state.errors["tx_errors"] = port.state.errors["tx_carrier_errors"] = 0;
  EXPECT_EQ(measuredIn(port.status(), "NewErrors"), 12 + 3);
}

struct LinkRow {
  const char* name;
  void (*breakIt)(OnePort&);
  CompletionState state;
  const char* code;
  const char* text;
};

class PortFault : public ::testing::TestWithParam<LinkRow> {};

TEST_P(PortFault, IsFoundAndNamed) {
  OnePort port;
  GetParam().breakIt(port);
  const Outcome outcome = port.status();
  EXPECT_EQ(outcome.state, GetParam().state) << outcome.text;
  EXPECT_TRUE(tells(outcome, GetParam().text)) << outcome.text;
  ASSERT_EQ(outcome.notes.size(), 1U) << outcome.text;
  if (outcome.state == CompletionState::Failed) {
    EXPECT_EQ(outcome.errors.at(0).code, GetParam().code);
  }
  EXPECT_EQ(outcome.notes[0].part.name, "network port eth0");
  EXPECT_EQ(outcome.notes[0].part.location, "3");
  EXPECT_FALSE(outcome.notes[0].correctiveAction.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Each, PortFault,
    ::testing::Values(
        LinkRow{"LinkThatNeverWas", [](OnePort& port) { port.state.carrier = false; },
                CompletionState::Warning, "No link",
                "eth0 (e1000e, slot 3) is switched on and has no link\n"},
        LinkRow{"LinkThatWasLost",
                [](OnePort& port) {
                  port.state.carrier = false;
                  port.state.linkLosses = 1;
                },
                CompletionState::Failed, "No link", "it lost one since the system's start"},
        LinkRow{"MemberWithoutLink",
                [](OnePort& port) {
                  port.state.carrier = false;
                  port.state.member = true;
                },
                CompletionState::Failed, "No link", "it is a member of a bond or a bridge"},
        LinkRow{"UnsteadyLink",
                [](OnePort& port) {
                  port.whileWaiting = [&port] {
                    if (port.now > 1 && port.now < 1.15) *port.state.linkChanges += 2;
                  };
                },
                CompletionState::Warning, "Unsteady link",
                "changed between link and no link 2 times during the test"},
        LinkRow{"RisingCounter",
                [](OnePort& port) {
                  port.whileWaiting = [&port] {
                    if (port.now > 1 && port.now < 1.15) port.state.errors["rx_crc_errors"] += 3;
                  };
                },
                CompletionState::Warning, "Rising error counter",
                "rose during the test: rx_crc_errors by 3\n"},
        LinkRow{"SlowerThanBothEnds",
                [](OnePort& port) {
                  port.state.megabits = 100;
                  port.driver.supported = {0x3F, 0, 0};
                  port.driver.offered = {0x2F, 0, 0};
                  port.driver.partner = {0x2C, 0, 0};
                },
                CompletionState::Warning, "Link speed",
                "runs at 100 Mbit/s, full duplex; both ends can 1000 Mbit/s, full duplex\n"},
        LinkRow{"HalfDuplex", [](OnePort& port) { port.state.duplex = Duplex::Half; },
                CompletionState::Warning, "Half duplex", "expected full, found half"},
        LinkRow{"UnreadableCounters",
                [](OnePort& port) {
                  port.state.unreadable = {"rx_errors", "tx_errors"};
                },
                CompletionState::Warning, "Unreadable counter",
                "cannot be read: rx_errors, tx_errors\n"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PortStatus, ASlowerPartnerIsNoFault) {
  OnePort port;
  port.state.megabits = 100;
  port.driver.supported = port.driver.offered = {0x3F, 0, 0};
  port.driver.partner = {0x0F, 0, 0};
  EXPECT_EQ(port.status().state, CompletionState::Ok);
}

TEST(PortStatus, ModesBeyondTheFirstWordOfBitsCount) {
  OnePort port;
  port.state.megabits = 25000;
  port.driver.supported = port.driver.offered = port.driver.partner = {0, 1U << 7, 1U << 5};
  EXPECT_TRUE(tells(port.status(), "both ends can 400000 Mbit/s, full duplex"));
}

TEST(PortStatus, CountersThatWereSetBackHaveNotRisen) {
  OnePort port;
  port.whileWaiting = [&port] { port.state.errors["rx_errors"] = 0; };
  EXPECT_EQ(port.status().state, CompletionState::Ok);
}

TEST(PortStatus, WhatAVirtualPortDoesNotTellIsNoFault) {
  OnePort port;
  port.state.megabits.reset();
  port.state.duplex = Duplex::Unknown;
  EXPECT_EQ(port.status().summary, "Link, a speed that is not told");
  port.state.carrier.reset();
  EXPECT_EQ(port.status().summary, "No error; whether there is a link is not told");
}

TEST(PortStatus, APortThatIsSwitchedOffIsNotTested) {
  OnePort port;
  port.state.on = false;
  const Outcome outcome = port.status();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "eth0 (e1000e, slot 3) is administratively down\n"));
  EXPECT_EQ(outcome.notes[0].correctiveAction,
            "Switch it on (ip link set eth0 up) and run the test again\n");
}

TEST(PortStatus, APortThatGoesMeanwhileIsNotTested) {
  OnePort port;
  port.whileWaiting = [&port] { port.state = {}; };
  EXPECT_EQ(port.status().state, CompletionState::Incomplete);
  StatusDiagnostic test = port.statusTest();
  EXPECT_EQ(test.run({"eth1", "", {}}, {}, port.control).summary, "Not tested: the port is gone");
}

TEST(PortStatus, ARunThatIsStoppedSaysSo) {
  OnePort port;
  port.control.stopAfter(3);
  const Outcome outcome = port.status();
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  EXPECT_LT(port.now, 1);
}

RunSettings with(const std::string& name, Value value, bool quick = false) {
  RunSettings settings;
  settings.quick = quick;
  settings.properties = {{name, std::move(value), false}};
  return settings;
}

TEST(PortStatus, WatchesForAsLongAsIsAskedFor) {
  OnePort port;
  const StatusDiagnostic test = port.statusTest();
  EXPECT_EQ(test.passSeconds(with("WatchSeconds", std::uint32_t{60})), 60);
  EXPECT_EQ(test.passSeconds(with("WatchSeconds", std::uint32_t{60}, true)), 12);
  EXPECT_EQ(test.passSeconds(with("WatchSeconds", std::uint32_t{2}, true)), 1);
}

TEST(PortSettings, ThatMakeNoSenseAreRefusedByName) {
  OnePort port;
  const StatusDiagnostic status = port.statusTest();
  const std::string watch = "WatchSeconds is not between 1 and 86400";
  EXPECT_EQ(status.refuse(with("WatchSeconds", std::uint32_t{0})), watch);
  EXPECT_EQ(status.refuse(with("WatchSeconds", std::uint32_t{86401})), watch);
  EXPECT_EQ(status.refuse(with("WatchSeconds", std::string("long"))), watch);
  EXPECT_EQ(status.refuse(with("WatchSeconds", std::uint32_t{86400})), "");
  EXPECT_EQ(status.refuse(with("LinkSpeeds", std::string("1"))), "LinkSpeeds is not supported");
  const PingDiagnostic ping({port.finder(), port.reader(), {}});
  EXPECT_EQ(ping.refuse(with("Packets", std::uint32_t{60001})),
            "Packets is not between 1 and 60000");
}

TEST(PortSelfTest, IsOfferedWhereTheDriverHasTests) {
  OnePort port;
  EXPECT_EQ(port.selfTest(TestMode::Online).devices().size(), 1U);
  port.port.selfTests = false;
  EXPECT_TRUE(port.selfTest(TestMode::Online).devices().empty());
  EXPECT_TRUE(port.selfTest(TestMode::Offline).devices().empty());
  EXPECT_EQ(port.statusTest().devices().at(0).name, "e1000e Network Port");
}

TEST(PortSelfTest, OnlyTheOneThatCutsThePortOffIsRisky) {
  OnePort port;
  using Uint16s = std::vector<std::uint16_t>;
  const auto characteristics = [](const Diagnostic& test) {
    return std::get<Uint16s>(test.description().testProperties.get("Characteristics"));
  };
  EXPECT_EQ(characteristics(port.selfTest(TestMode::Online)), Uint16s{});
  EXPECT_EQ(characteristics(port.selfTest(TestMode::Offline)), Uint16s{5});
}

TEST(PortSelfTest, AsksTheDriverForTheTestsOfItsKind) {
  OnePort port;
  const Outcome outcome = port.self();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "The driver found no fault in 2 tests");
  port.self(TestMode::Offline);
  EXPECT_EQ(port.driver.testFlags, (std::vector<std::uint32_t>{0, ETH_TEST_FL_OFFLINE}));
}

TEST(PortSelfTest, NamesTheTestsThatFail) {
  OnePort port;
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
  OnePort port;
  port.driver.testValues = {0, 1};
  EXPECT_EQ(port.self().state, CompletionState::Failed);
  port.driver.testValues = {0, 0};
  port.driver.testsFailed = true;
  EXPECT_TRUE(tells(port.self(), "it does not tell in which of its tests"));
}

TEST(PortSelfTest, TestsWithoutOrWithHostileNamesAreNumberedOrCleaned) {
  OnePort port;
  port.driver.testNames = {"", "\x1b[2Jx", std::string(40, 'y')};
  port.driver.testValues = {1, 1, 1};
  EXPECT_TRUE(
      tells(port.self(), "found faults: test 1 (1), [2Jx (1), " + std::string(32, 'y') + " (1)\n"));
}

TEST(PortSelfTest, WithoutTheRightIsIncompleteAndSaysWhich) {
  OnePort port;
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
  OnePort port;
  port.state.on = false;
  EXPECT_EQ(port.self().state, CompletionState::Incomplete);
  EXPECT_TRUE(port.driver.testFlags.empty());
  EXPECT_EQ(port.self(TestMode::Offline).state, CompletionState::Ok);
}

TEST(PortSelfTest, WaitsForTheLinkThatItTookAway) {
  OnePort port;
  port.driver.duringTest = [&port] { port.state.carrier = false; };
  port.whileWaiting = [&port] { port.state.carrier = port.now > 3; };
  EXPECT_EQ(port.self(TestMode::Offline).state, CompletionState::Ok);
  EXPECT_NEAR(port.now, 3.5, 0.01);
  port.whileWaiting = [] {};
  const Outcome outcome = port.self(TestMode::Offline);
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "had a link before the test, and none 15 s after it"));
}

/// A loopback interface that may lose or change what is sent.
struct Loopback : EchoDoor {
  int send(const EchoPacket& packet) override {
    sizes.push_back(packet.content.size());
    if (problem == 0) queue.push_back(packet);
    return problem;
  }
  std::optional<EchoPacket> receive(int) override {
    if (queue.empty()) return std::nullopt;
    EchoPacket packet = queue.front();
    queue.pop_front();
    return spoil(std::move(packet));
  }
  std::function<std::optional<EchoPacket>(EchoPacket)> spoil = [](EchoPacket packet) {
    return std::optional<EchoPacket>(std::move(packet));
  };
  int problem = 0;
  std::deque<EchoPacket> queue;
  std::vector<std::size_t> sizes;
};

struct Pinged : OnePort {
  Pinged() {
    port.name = port.id = "lo";
    port.loopback = true;
  }
  Outcome ping(const RunSettings& settings = {}) {
    PingDiagnostic test({finder(), reader(), [this] {
                           OpenedEcho opened;
                           opened.problem = refusal;
                           if (refusal.empty()) {
                             auto door = std::make_unique<Loopback>();
                             prepare(*door);
                             opened.door = std::move(door);
                           }
                           return opened;
                         }});
    return test.run(test.devices().at(0), settings, control);
  }
  std::string refusal;
  std::function<void(Loopback&)> prepare = [](Loopback&) {};
};

TEST(Ping, OfAGoodLoopbackInterfaceFindsNothing) {
  Pinged pinged;
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(outcome.summary, "100 of 100 packets came back");
  EXPECT_EQ(pinged.ping(with("Packets", std::uint32_t{10}, true)).summary,
            "2 of 2 packets came back");
}

TEST(Ping, LostPacketsAreAFault) {
  Pinged pinged;
  pinged.prepare = [](Loopback& door) {
    door.spoil = [](EchoPacket packet) {
      return packet.sequence % 10 == 0 ? std::nullopt : std::optional(packet);
    };
  };
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "10 did not come back and 0 came back changed"));
  EXPECT_EQ(outcome.errors.at(0).code, "Lost packet");
}

TEST(Ping, ChangedPacketsAreAFault) {
  Pinged pinged;
  pinged.prepare = [](Loopback& door) {
    door.spoil = [](EchoPacket packet) {
      if (packet.sequence == 5)
        packet.content.back() = static_cast<char>(packet.content.back() ^ 1);
      return std::optional(packet);
    };
  };
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_EQ(measuredIn(outcome, "ChangedPackets"), 1);
  EXPECT_EQ(outcome.errors.at(0).code, "Changed packet");
}

TEST(Ping, AnInterfaceThatReturnsNothingIsGivenUpSoon) {
  Pinged pinged;
  pinged.prepare = [](Loopback& door) { door.problem = EPERM; };
  const Outcome outcome = pinged.ping();
  EXPECT_EQ(outcome.summary, "0 of 3 packets came back");
  EXPECT_TRUE(tells(outcome, "could not be sent: Operation not permitted"));
}

TEST(Ping, WithoutTheRightOrWithTheInterfaceOffIsIncomplete) {
  Pinged pinged;
  pinged.refusal = "no socket";
  EXPECT_EQ(pinged.ping().state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(pinged.ping(), "no socket"));
  pinged.state.on = false;
  EXPECT_EQ(pinged.ping().summary, "Not tested: the port is switched off");
}

TEST(Ping, IsOfferedForTheLoopbackInterfaceAlone) {
  OnePort port;
  EXPECT_TRUE(PingDiagnostic({port.finder(), port.reader(), {}}).devices().empty());
  Pinged pinged;
  EXPECT_TRUE(pinged.statusTest().devices().empty());
}

TEST(EchoDoor, GoesThroughTheMachineWhereTheUserMay) {
  const OpenedEcho echo = openLoopbackEcho();
  if (!echo.door) GTEST_SKIP() << echo.problem;
  const std::string content(3000, 'x');
  if (echo.door->send({7, content}) != 0) GTEST_SKIP() << "there is no loopback interface";
  const auto answer = echo.door->receive(5000);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->sequence, 7);
  EXPECT_EQ(answer->content, content);
}

}  // namespace
}  // namespace providers::port
