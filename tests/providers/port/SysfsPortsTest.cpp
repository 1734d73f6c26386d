#include <gtest/gtest.h>

#include "providers/port/finding/SysfsPorts.h"
#include "tests/providers/LinkedTree.h"

namespace providers::port {
namespace {

/// A machine with a port in a slot; others are added.
struct Machine : LinkedTree {
  void interface(const std::string& name, const std::string& type = "1") {
    add("class/net/" + name + "/type", type + "\n");
    add("class/net/" + name + "/flags", "0x1003\n");
  }
  void port(const std::string& name, const std::string& address = "0000:02:00.0") {
    interface(name);
    add("class/net/" + name + "/address", "52:54:00:12:34:56\n");
    add("devices/pci0000:00/0000:00:01.0/" + address + "/vendor", "0x8086\n");
    link("class/net/" + name + "/device", "../../../devices/pci0000:00/0000:00:01.0/" + address);
    link("devices/pci0000:00/0000:00:01.0/" + address + "/driver", "../drivers/e1000e");
  }
  std::vector<Port> find() const {
    return findSysfsPorts(root(), [](const std::string& name) { return name == "eth0"; });
  }
  std::vector<std::string> ids() const {
    std::vector<std::string> list;
    for (const Port& one : find()) list.push_back(one.id);
    return list;
  }
  PortState state() const { return readSysfsPort(root(), find().at(0)); }
};

TEST(SysfsPorts, AMachineWithoutAnyHasNone) {
  EXPECT_TRUE(Machine().ids().empty());
  EXPECT_TRUE(findSysfsPorts("/nowhere", {}).empty());
}

TEST(SysfsPorts, AreThoseOfADeviceAndTheLoopbackInterface) {
  Machine machine;
  machine.interface("lo", "772");
  machine.port("eth10");
  machine.port("eth2");
  machine.interface("br0");  // made of others
  machine.interface("tun0", "65534");
  machine.port("wlan0");
  machine.add("class/net/wlan0/wireless/status", "");  // a radio
  machine.port("ib0");
  machine.add("class/net/ib0/type", "32\n");
  EXPECT_EQ(machine.ids(), (std::vector<std::string>{"eth2", "eth10", "lo"}));
}

TEST(SysfsPorts, AreDescribedSoThatTheyCanBeFound) {
  Machine machine;
  machine.port("eth0");
  machine.add("bus/pci/slots/3/address", "0000:02:00\n");
  machine.add("bus/pci/slots/4/address", "0000:02:0\n");
  const Port port = machine.find().at(0);
  EXPECT_TRUE(port.selfTests);
  EXPECT_EQ(describe(port), "eth0 (e1000e, 52:54:00:12:34:56, PCI 0000:02:00.0, slot 3)");
}

TEST(SysfsPorts, HostileNamesAreMadeFitForAList) {
  Machine machine;
  machine.port("a,b|\x1b[31m");
  machine.add("class/net/a,b|\x1b[31m/address", "\x1b]0;evil\x07\n");
  EXPECT_EQ(machine.ids(), std::vector<std::string>{"a_b_ [31m"});
  EXPECT_EQ(machine.find().at(0).address, "]0;evil");
  EXPECT_TRUE(machine.state().present);
}

TEST(SysfsPorts, ACommandIsNamedWhereAShellTakesTheNameForNothingElse) {
  Machine machine;
  machine.port("eth0");
  machine.port("eth*");
  const std::vector<Port> ports = machine.find();
  ASSERT_EQ(ports.size(), 2U);
  for (const Port& port : ports)
    EXPECT_EQ(port.switchOff, port.name == "eth0" ? "ip link set eth0 down" : "") << port.name;
}

TEST(SysfsPortState, HasWhatTheSystemTells) {
  Machine machine;
  machine.port("eth0");
  for (const auto& [file, content] :
       {std::pair{"carrier", "1"}, std::pair{"speed", "1000"}, std::pair{"duplex", "full"},
        std::pair{"carrier_up_count", "2"}, std::pair{"carrier_changes", "5"},
        std::pair{"statistics/rx_crc_errors", "7"}, std::pair{"statistics/rx_dropped", "9"}})
    machine.add(std::string("class/net/eth0/") + file, std::string(content) + "\n");
  const PortState state = machine.state();
  EXPECT_TRUE(state.present);
  EXPECT_TRUE(state.on);
  EXPECT_EQ(state.carrier, true);
  EXPECT_EQ(state.megabits, 1000U);
  EXPECT_EQ(state.duplex, Duplex::Full);
  EXPECT_EQ(state.linkGains, 2U);
  EXPECT_EQ(state.linkChanges, 5U);
  EXPECT_EQ(state.errors, (std::map<std::string, std::uint64_t>{{"rx_crc_errors", 7}}));
  EXPECT_FALSE(state.member);
}

TEST(SysfsPortState, WhatIsNotToldIsNotMadeUp) {
  for (const char* speed : {"-1", "0", "4294967295", "fast", ""}) {
    Machine machine;
    machine.port("eth0");
    machine.add("class/net/eth0/speed", std::string(speed) + "\n");
    machine.add("class/net/eth0/duplex", "unknown\n");
    machine.add("class/net/eth0/flags", "0x1002\n");
    const PortState state = machine.state();
    EXPECT_EQ(state.megabits, std::nullopt) << speed;
    EXPECT_EQ(state.duplex, Duplex::Unknown);
    EXPECT_EQ(state.carrier, std::nullopt);
    EXPECT_FALSE(state.on);
  }
}

TEST(SysfsPortState, NamesCountersThatCannotBeRead) {
  Machine machine;
  machine.port("eth0");
  machine.add("class/net/eth0/statistics/rx_errors", "many\n");
  machine.add("class/net/eth0/statistics/tx_errors/x", "");  // a folder: not to be read
  EXPECT_EQ(machine.state().unreadable, (std::vector<std::string>{"rx_errors", "tx_errors"}));
}

TEST(SysfsPortState, TellsMembersAndPortsThatAreGone) {
  Machine machine;
  machine.port("eth0");
  const Port port = machine.find().at(0);
  machine.link("class/net/eth0/master", "../bond0");
  machine.interface("bond0");
  EXPECT_TRUE(readSysfsPort(machine.root(), port).member);
  machine.remove("class/net/eth0");
  EXPECT_FALSE(readSysfsPort(machine.root(), port).present);
}

}  // namespace
}  // namespace providers::port
