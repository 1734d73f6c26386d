#include <gtest/gtest.h>

#include "providers/pcie/finding/Capability.h"
#include "providers/pcie/finding/DeviceNames.h"
#include "providers/pcie/finding/SysfsLinks.h"
#include "tests/providers/pcie/FakeFabric.h"

namespace providers::pcie {
namespace {

std::vector<std::string> devicesOf(const std::string& sys) {
  std::vector<std::string> addresses;
  for (const Link& link : findLinks(sys))
    addresses.push_back(link.device.address + " at " + link.port.address);
  return addresses;
}

TEST(SysfsLinks, AMachineWithoutAnyHasNone) {
  LinkedTree empty;
  EXPECT_FALSE(hasLinks(empty.root()));
  EXPECT_TRUE(findLinks("/nowhere").empty());
}

TEST(SysfsLinks, ADeviceIsLinkedToThePortAboveIt) {
  FakeFabric fabric;
  EXPECT_TRUE(hasLinks(fabric.root()));
  const Link link = findLinks(fabric.root()).at(0);
  EXPECT_EQ(link.device.address, FakeFabric::kDevice);
  EXPECT_EQ(link.port.address, FakeFabric::kPort);
  EXPECT_EQ(link.slot, "5");
  EXPECT_EQ(link.vendorId, 0x8086);
  EXPECT_EQ(link.deviceId, 0x1533);
  EXPECT_EQ(expectedWidth(link), 8U);
  EXPECT_EQ(expectedSpeed(link), 80U);
}

TEST(SysfsLinks, TheInsideOfASwitchAndOfTheRootIsNone) {
  FakeFabric fabric;
  const std::string upper = "pci0000:00/0000:00:02.0/0000:03:00.0";
  fabric.device("pci0000:00", "0000:00:02.0", "4", "8.0 GT/s PCIe");
  fabric.device("pci0000:00/0000:00:02.0", "0000:03:00.0", "4", "8.0 GT/s PCIe");
  fabric.device(upper, "0000:04:01.0", "4", "8.0 GT/s PCIe");
  fabric.device(upper + "/0000:04:01.0", "0000:05:00.0", "4", "8.0 GT/s PCIe");
  fabric.place("pci0000:00", "0000:00:1f.0");               // no PCI Express at all
  fabric.place("pci0000:00/0000:00:1e.0", "0000:06:00.0");  // behind an old bridge
  EXPECT_EQ(devicesOf(fabric.root()), (std::vector<std::string>{"0000:02:00.0 at 0000:00:01.0",
                                                                "0000:03:00.0 at 0000:00:02.0",
                                                                "0000:05:00.0 at 0000:04:01.0"}));
}

TEST(SysfsLinks, TheFirstFunctionStandsForItsDevice) {
  FakeFabric fabric;
  fabric.device("pci0000:00/0000:00:01.0", "0000:02:00.1", "8", "8.0 GT/s PCIe");
  EXPECT_EQ(devicesOf(fabric.root()).size(), 1U);
}

TEST(SysfsLinks, BehindAVolumeControllerADomainBeginsAnew) {
  FakeFabric fabric;
  const std::string domain = "pci0000:64/0000:64:00.5/pci10000:00";
  fabric.device(domain, "10000:00:02.0", "4", "8.0 GT/s PCIe");
  fabric.device(domain + "/10000:00:02.0", "10000:01:00.0", "4", "8.0 GT/s PCIe");
  EXPECT_EQ(devicesOf(fabric.root()).back(), "10000:01:00.0 at 10000:00:02.0");
}

TEST(SysfsLinks, WhatIsNoWidthOrSpeedIsNotToldToBeOne) {
  for (const char* text : {"0", "63", "255", "-4", "x8", ""}) {
    FakeFabric fabric;
    fabric.file(FakeFabric::kDevice, "current_link_width", text);
    EXPECT_EQ(readEnd(fabric.root(), FakeFabric::kDevice).side.width, std::nullopt) << text;
  }
  for (const char* text : {"Unknown", "", "8", "8.0", "8.0 MHz", "-2.5 GT/s PCIe", "8.x GT/s"}) {
    FakeFabric fabric;
    fabric.file(FakeFabric::kDevice, "current_link_speed", text);
    EXPECT_EQ(readEnd(fabric.root(), FakeFabric::kDevice).side.speed, std::nullopt) << text;
  }
}

TEST(SysfsLinks, SpeedsOfAllKernelsAreRead) {
  FakeFabric fabric;
  for (const auto& [text, tenths] : {std::pair{"2.5 GT/s PCIe", 25U}, std::pair{"5 GT/s", 50U},
                                     std::pair{"32.0 GT/s PCIe", 320U}}) {
    fabric.file(FakeFabric::kDevice, "current_link_speed", text);
    EXPECT_EQ(readEnd(fabric.root(), FakeFabric::kDevice).side.speed, tenths) << text;
  }
}

TEST(SysfsLinks, ASlotIsNamedByTheFirmwareWhereTheSystemDoesNot) {
  FakeFabric fabric;
  fabric.remove("bus/pci/slots");
  std::string slot = {9, 0x11, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0};
  fabric.add("firmware/dmi/tables/DMI", slot +
                                            "Slot \x1b"
                                            "7\n" +
                                            std::string(2, '\0'));
  EXPECT_EQ(findLinks(fabric.root()).at(0).slot, "Slot 7");
}

TEST(SysfsLinks, ErrorsAreReadByNameWithoutTheirSum) {
  FakeFabric fabric;
  EXPECT_TRUE(readErrors(fabric.root()).empty());
  fabric.errors(FakeFabric::kDevice, 3, 2, 1);
  const AllErrors all = readErrors(fabric.root());
  ASSERT_EQ(all.size(), 1U);
  const DeviceErrors& errors = all.begin()->second;
  EXPECT_EQ(errors.corrected, (ErrorCounts{{"BadTLP", 3}, {"Undefined", 0}}));
  EXPECT_EQ(errors.nonfatal.at("TLP"), 2U);
  EXPECT_EQ(errors.fatal.at("DLP"), 1U);
  EXPECT_FALSE(errors.unreadable);
}

TEST(SysfsLinks, CountersThatCannotBeReadAreToldToBeSo) {
  for (const char* content : {"BadTLP many", ""}) {
    FakeFabric fabric;
    fabric.errors(FakeFabric::kDevice, 0, 0, 0);
    fabric.add(std::string("bus/pci/devices/") + FakeFabric::kDevice + "/aer_dev_fatal", content);
    EXPECT_TRUE(readErrors(fabric.root()).begin()->second.unreadable) << content;
  }
}

/// A configuration with a list of capabilities in which PCI Express comes second.
std::string configuration(unsigned target) {
  std::string bytes(256, '\0');
  bytes[0x06] = 0x10;
  bytes[0x34] = 0x40;
  bytes[0x40] = 0x01;
  bytes[0x41] = 0x50;
  bytes[0x50] = 0x10;
  bytes[0x80] = static_cast<char>(target);
  return bytes;
}

TEST(TargetSpeed, IsWhatThePortWasToldToGoTo) {
  EXPECT_EQ(targetSpeed(configuration(1)), 25U);
  EXPECT_EQ(targetSpeed(configuration(4)), 160U);
  EXPECT_EQ(targetSpeed(configuration(0)), std::nullopt);
  EXPECT_EQ(targetSpeed(configuration(15)), std::nullopt);
}

TEST(TargetSpeed, ConfigurationsOfAnyLengthAndListsWithoutEndAreReadWithoutHarm) {
  const std::string whole = configuration(3);
  for (std::size_t length = 0; length < 0x82; ++length)
    EXPECT_EQ(targetSpeed(whole.substr(0, length)), std::nullopt) << length;
  std::string ring = whole;
  ring[0x41] = 0x40;
  EXPECT_EQ(targetSpeed(ring), std::nullopt);
  EXPECT_EQ(targetSpeed(std::string(256, '\xff')), std::nullopt);
}

TEST(TargetSpeed, LimitsWhatALinkIsExpectedToHave) {
  FakeFabric fabric;
  fabric.add(std::string("bus/pci/devices/") + FakeFabric::kPort + "/config", configuration(2));
  EXPECT_EQ(expectedSpeed(findLinks(fabric.root()).at(0)), 50U);
}

TEST(DeviceNames, AreThoseOfTheFirstFileThatIsThere) {
  LinkedTree tree;
  tree.add("pci.ids",
           "# a comment\n8086  Intel Corporation\n\t1533  I210 Gigabit\t\x1b[31m\n"
           "\t\t8086 0001  A board\n10de  Other\n\t1533  Wrong\nC 02  Network\n\t00  Ethernet\n");
  const auto names =
      deviceNames({{0x8086, 0x1533}, {0x8086, 1}}, {"/nowhere", tree.root() + "/pci.ids"});
  EXPECT_EQ(names.at({0x8086, 0x1533}), "Intel Corporation I210 Gigabit [31m");
  EXPECT_EQ(names.at({0x8086, 1}), "8086:0001");
  EXPECT_EQ(deviceNames({{1, 2}}, {}).at({1, 2}), "0001:0002");
}

}  // namespace
}  // namespace providers::pcie
