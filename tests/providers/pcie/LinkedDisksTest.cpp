#include <gtest/gtest.h>

#include "providers/pcie/finding/LinkedDisks.h"
#include "tests/providers/pcie/FakeDisks.h"

namespace providers::pcie {
namespace {

using Names = std::vector<std::string>;

Names namesOf(const FakeFabric& fabric) {
  Names names;
  for (const LinkedDisk& disk : findLinkedDisks(fabric.root())) names.push_back(disk.name);
  return names;
}

Link linkOf(const std::string& address) {
  Link link;
  link.device.address = address;
  return link;
}

TEST(LinkedDisks, AreThoseOfStorageDevicesWithTheWayToThem) {
  FakeFabric fabric;
  EXPECT_TRUE(findLinkedDisks(fabric.root()).empty());
  addDisk(fabric, "nvme0n1");
  const auto disks = findLinkedDisks(fabric.root());
  ASSERT_EQ(disks.size(), 1U);
  EXPECT_EQ(disks[0].node, "/dev/nvme0n1");
  EXPECT_EQ(disks[0].number, "259:0");
  EXPECT_EQ(disks[0].bytes, 4096U * 512);
  EXPECT_EQ(disks[0].chain, (Names{FakeFabric::kPort, FakeFabric::kDevice}));
}

TEST(LinkedDisks, ComeOverEachLinkAboveThemAndOverThatOfAnotherFunction) {
  FakeFabric fabric;
  addDisk(fabric, "sda");
  const LinkedDisk disk = findLinkedDisks(fabric.root()).at(0);
  EXPECT_TRUE(comesOver(linkOf("0000:02:00.0"), disk));
  EXPECT_TRUE(comesOver(linkOf("0000:02:00.1"), disk)) << "its functions share a device's link";
  EXPECT_TRUE(comesOver(linkOf(FakeFabric::kPort), disk));
  EXPECT_FALSE(comesOver(linkOf("0000:03:00.0"), disk));
  EXPECT_FALSE(comesOver(linkOf("0000:02:01.0"), disk));
}

struct DiskRow {
  const char* name;
  void (*change)(FakeFabric&);
};

TEST(LinkedDisks, WhatCannotBeReadOrIsNoDriveOfItsOwnIsNone) {
  for (const DiskRow& row :
       {DiskRow{"no medium", [](FakeFabric& fabric) { fabric.add("block/sda/size", "0\n"); }},
        DiskRow{"a medium that can be taken out",
                [](FakeFabric& fabric) { fabric.add("block/sda/removable", "1\n"); }},
        DiskRow{"no number", [](FakeFabric& fabric) { fabric.remove("block/sda/dev"); }},
        DiskRow{"a stick at a controller of another kind",
                [](FakeFabric& fabric) { fabric.file(FakeFabric::kDevice, "class", "0x0c0330"); }},
        DiskRow{"made of others", [](FakeFabric& fabric) {
                  fabric.link("block/sda", "../devices/virtual/block/sda");
                }}}) {
    FakeFabric fabric;
    addDisk(fabric, "sda");
    ASSERT_EQ(namesOf(fabric), Names{"sda"});
    row.change(fabric);
    EXPECT_TRUE(namesOf(fabric).empty()) << row.name;
  }
}

TEST(LinkedDisks, ADriveWithSeveralWaysIsReadByNoneOfThem) {
  FakeFabric fabric;
  fabric.add("devices/virtual/nvme-subsystem/nvme-subsys0/nvme0n1/dev", "259:4\n");
  fabric.link("block/nvme0n1", "../devices/virtual/nvme-subsystem/nvme-subsys0/nvme0n1");
  addDisk(fabric, "nvme0c0n1");
  fabric.add("block/nvme0c0n1/hidden", "1\n");
  ASSERT_EQ(namesOf(fabric), Names{"nvme0n1"});
  EXPECT_EQ(findLinkedDisks(fabric.root()).at(0).number, "259:4");
  addDisk(fabric, "nvme0c1n1");
  fabric.add("block/nvme0c1n1/hidden", "1\n");
  EXPECT_TRUE(namesOf(fabric).empty());
}

}  // namespace
}  // namespace providers::pcie
