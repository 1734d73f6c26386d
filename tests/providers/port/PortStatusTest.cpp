#include <gtest/gtest.h>

#include "providers/port/services/PingDiagnostic.h"
#include "tests/providers/port/OnePort.h"

namespace providers::port {
namespace {

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
                  port.state.linkGains = 1;
                },
                CompletionState::Failed, "No link", "it had one since the system's start"},
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
        LinkRow{"SlowerThanBothEnds", [](OnePort& port) { port.state.megabits = 100; },
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

TEST(PortStatus, WhatIsNotToldIsNotMadeToLookTested) {
  OnePort port;
  EXPECT_FALSE(tells(port.status(), "Not told"));
  port.modes = {};
  port.state.duplex = Duplex::Unknown;
  const Outcome outcome = port.status();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_TRUE(
      tells(outcome, "Not told, and so not judged: the speed that both ends can, the duplex\n"))
      << outcome.text;
}

TEST(PortStatus, WithoutACountOfChangesTheLinkIsWatched) {
  OnePort port;
  port.state.linkChanges.reset();
  port.whileWaiting = [&port] { port.state.carrier = port.now < 1 || port.now > 2; };
  EXPECT_TRUE(tells(port.status(), "changed between link and no link 2 times during the test"));
}

TEST(PortStatus, ALinkThatGoesDuringTheTestWasOneThatSomebodyReliedOn) {
  OnePort port;
  port.state.linkChanges.reset();
  port.state.linkGains.reset();
  port.whileWaiting = [&port] { port.state.carrier = port.now < 1; };
  const Outcome outcome = port.status();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "has no link; it lost one during the test\n")) << outcome.text;
}

TEST(PortStatus, APortThatWasAwayForAMomentHadNoLinkThen) {
  OnePort port;
  port.state.linkChanges.reset();
  port.whileWaiting = [&port] { port.state.present = port.now < 1 || port.now > 2; };
  EXPECT_TRUE(tells(port.status(), "changed between link and no link 2 times during the test"));
}

TEST(PortStatus, ALinkWhoseHistoryIsNotToldMayHaveBeenNone) {
  OnePort port;
  port.state.linkGains.reset();
  port.state.carrier = false;
  const Outcome outcome = port.status();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "; whether it had one since the system's start is not told\n"))
      << outcome.text;
}

TEST(PortStatus, DroppedPacketsAreToldAndNoFault) {
  OnePort port;
  port.state.discards = {{"InDiscards", 4}, {"OutDiscards", 0}};
  port.whileWaiting = [&port] { port.state.discards["InDiscards"] = 6; };
  const Outcome outcome = port.status();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_TRUE(tells(outcome, "which is no fault: InDiscards 6 (2 during the test)\n"))
      << outcome.text;
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
  port.port.switchOn.clear();
  EXPECT_EQ(port.status().notes[0].correctiveAction, "Switch it on and run the test again\n");
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

}  // namespace
}  // namespace providers::port
