#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "providers/port/finding/InterfaceTable.h"
#include "providers/port/services/PingDiagnostic.h"
#include "tests/providers/port/OnePort.h"

namespace providers::port {
namespace {

constexpr std::uint64_t kGigabit = 1000000000;

Interface ethernet(std::uint64_t luid, const std::string& alias) {
  Interface one;
  one.luid = luid;
  one.index = static_cast<std::uint32_t>(luid);
  one.kind = InterfaceKind::Ethernet;
  one.alias = alias;
  one.description = "Example Gigabit Adapter";
  one.address = "52:54:00:12:34:56";
  one.hardware = true;
  one.connected = true;
  one.sendBits = one.receiveBits = kGigabit;
  return one;
}

Interface loopback() {
  Interface one;
  one.luid = one.index = 1;
  one.kind = InterfaceKind::Loopback;
  one.alias = "Loopback Pseudo-Interface 1";
  return one;
}

std::vector<std::string> idsOf(const std::vector<Interface>& interfaces) {
  std::vector<std::string> ids;
  for (const Port& port : portsAmong(interfaces)) ids.push_back(port.id);
  return ids;
}

using Names = std::vector<std::string>;

TEST(InterfaceTable, PortsAreThoseOfHardwareAndTheLoopbackInterface) {
  Interface tunnel = ethernet(20, "Teredo");
  tunnel.kind = InterfaceKind::Other;
  Interface bridge = ethernet(21, "Network Bridge");
  bridge.hardware = false;
  EXPECT_EQ(
      idsOf({loopback(), ethernet(12, "Ethernet 10"), tunnel, bridge, ethernet(11, "Ethernet 2")}),
      (Names{"Ethernet 2", "Ethernet 10", "Loopback Pseudo-Interface 1"}));
  EXPECT_TRUE(idsOf({}).empty());
}

TEST(InterfaceTable, OneThatIsSwitchedOffIsStillAPortAndOneThatWasPulledOutIsNone) {
  Interface pulled = ethernet(12, "Ethernet 2");
  pulled.plugged = false;
  EXPECT_TRUE(idsOf({pulled}).empty());
  pulled.on = false;
  EXPECT_EQ(idsOf({pulled}), Names{"Ethernet 2"});
}

struct NameRow {
  const char* name;
  std::string alias;
};

class HostileAlias : public ::testing::TestWithParam<NameRow> {};

TEST_P(HostileAlias, GivesWayToTheNumberAndNamesNoCommand) {
  const std::vector<Port> ports = portsAmong({ethernet(12, GetParam().alias)});
  ASSERT_EQ(ports.size(), 1U);
  EXPECT_EQ(ports[0].id, "interface 12");
  EXPECT_EQ(ports[0].switchOn, "");
  EXPECT_EQ(ports[0].switchOff, "");
}

INSTANTIATE_TEST_SUITE_P(
    Each, HostileAlias,
    ::testing::Values(NameRow{"None", ""}, NameRow{"Separators", "a,b|c"},
                      NameRow{"Escapes", "\x1b[2JEthernet"}, NameRow{"LineEnd", "Ethernet\n"},
                      NameRow{"Commands", "x\" & del *"}, NameRow{"Option", "-Name"},
                      NameRow{"OtherLetters", "\xd0\x9f\xd0\xbe 2"},
                      NameRow{"TooLong", std::string(300, 'x')},
                      NameRow{"NumberOfAnother", "interface 7"}, NameRow{"Blanks", "a  b"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(InterfaceTable, AHostileDescriptionIsMadePrintableAndShort) {
  Interface one = ethernet(12, "Ethernet");
  one.description = "a\x1b[2J,b" + std::string(300, 'x');
  const std::vector<Port> ports = portsAmong({one});
  EXPECT_EQ(ports.at(0).model, "a [2J,b" + std::string(73, 'x'));
  StatusDiagnostic test({[&] { return ports; }, {}, {}, {}});
  EXPECT_EQ(test.devices().at(0).name, "a [2J_b" + std::string(73, 'x') + " Network Port");
}

/// A table whose one port a test watches.
struct TablePort : OnePort {
  TablePort() {
    rows = {{12, ethernet(12, "Ethernet 2")}};
    rows[12].inErrors = 7;
    rows[12].outErrors = 0;
  }
  Outcome watch() {
    std::vector<Interface> all;
    for (const auto& [luid, row] : rows) all.push_back(row);
    const std::vector<Port> ports = portsAmong(all);
    const ReadInterface readRow = [this](std::uint64_t luid) {
      const auto known = rows.find(luid);
      return known == rows.end() ? std::nullopt : std::optional<Interface>(known->second);
    };
    StatusDiagnostic test({[ports] { return ports; },
                           [readRow](const Port& one) { return readTablePort(readRow, one); },
                           [](const Port&) { return LinkModes{}; }, waiting()});
    return test.run(test.devices().at(0), {}, control);
  }
  std::map<std::uint64_t, Interface> rows;
};

TEST(InterfaceTable, AGoodPortIsSilentAndSaysWhatIsNotKnownOfIt) {
  TablePort table;
  const Outcome outcome = table.watch();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(outcome.text,
            "Ethernet 2 (Example Gigabit Adapter, 52:54:00:12:34:56): link, 1000 Mbit/s\n"
            "Error counters watched for 5 s\n"
            "Counted since the system's start: InErrors 7\n"
            "Not told, and so not judged: the speed that both ends can, the duplex\n");
  EXPECT_EQ(measuredIn(outcome, "NewErrors"), 0);
  EXPECT_EQ(measuredIn(outcome, "ReceiveErrorsSinceStart"), 7);
  EXPECT_EQ(measuredIn(outcome, "SendErrorsSinceStart"), 0);
}

TEST(InterfaceTable, RisingErrorsAreFoundAndEachDirectionCounts) {
  TablePort table;
  table.whileWaiting = [&table] {
    table.rows[12].inErrors = 7 + 3;
    table.rows[12].outErrors = 2;
    table.rows[12].inDiscards = 50;
  };
  const Outcome outcome = table.watch();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "rose during the test: InErrors by 3, OutErrors by 2\n"))
      << outcome.text;
  EXPECT_EQ(measuredIn(outcome, "NewErrors"), 5);
}

TEST(InterfaceTable, APortWithoutLinkIsFoundWithTheCommandThatSwitchesItOff) {
  TablePort table;
  table.rows[12].connected = false;
  const Outcome outcome = table.watch();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "is switched on and has no link; whether it had one")) << outcome.text;
  EXPECT_TRUE(tells(outcome, "(netsh interface set interface \"Ethernet 2\" admin=disabled)"));
  EXPECT_FALSE(tells(outcome, "Mbit/s")) << "of a link that is not there";
}

TEST(InterfaceTable, ALinkThatIsLostWhileItIsWatchedFails) {
  TablePort table;
  table.whileWaiting = [&table] { table.rows[12].connected = table.now < 2; };
  EXPECT_EQ(table.watch().state, CompletionState::Failed);
}

TEST(InterfaceTable, APortThatVanishesWhileItIsWatchedIsNotTested) {
  TablePort table;
  table.whileWaiting = [&table] { table.rows.erase(12); };
  EXPECT_EQ(table.watch().summary, "Not tested: the port is gone");
  TablePort pulled;
  pulled.whileWaiting = [&pulled] { pulled.rows[12].plugged = false; };
  EXPECT_EQ(pulled.watch().summary, "Not tested: the port is gone");
}

TEST(InterfaceTable, APortThatIsSwitchedOffIsNotTestedAndSaysHowToSwitchItOn) {
  TablePort table;
  table.rows[12].on = false;
  const Outcome outcome = table.watch();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "(netsh interface set interface \"Ethernet 2\" admin=enabled)"))
      << outcome.text;
}

struct SpeedRow {
  const char* name;
  std::uint64_t sends;
  std::uint64_t receives;
  std::optional<std::uint64_t> megabits;
};

TEST(InterfaceTable, SpeedIsThatOfTheSlowerDirectionAndNothingWhereItIsNotTold) {
  constexpr std::uint64_t kUntold = ~std::uint64_t{0};
  for (const SpeedRow& row :
       {SpeedRow{"gigabit", kGigabit, kGigabit, 1000}, SpeedRow{"zero", 0, 0, std::nullopt},
        SpeedRow{"all ones", kUntold, kUntold, std::nullopt},
        SpeedRow{"one of them", kGigabit, kUntold, std::nullopt},
        SpeedRow{"unlike", kGigabit, kGigabit / 10, 100},
        SpeedRow{"400 gigabit", 400 * kGigabit, 400 * kGigabit, 400000}}) {
    Interface one = ethernet(12, "Ethernet");
    one.sendBits = row.sends;
    one.receiveBits = row.receives;
    const PortState state =
        readTablePort([&](std::uint64_t) { return std::optional(one); }, portsAmong({one}).at(0));
    EXPECT_EQ(state.megabits, row.megabits) << row.name;
  }
}

TEST(InterfaceTable, ThePingIsOfferedForTheLoopbackInterfaceAndTheStatusIsNot) {
  const auto ports = portsAmong({loopback()});
  const FindPorts find = [&] { return ports; };
  EXPECT_EQ(PingDiagnostic({find, {}, {}}).devices().size(), 1U);
  EXPECT_TRUE(StatusDiagnostic({find, {}, {}, {}}).devices().empty());
}

}  // namespace
}  // namespace providers::port
