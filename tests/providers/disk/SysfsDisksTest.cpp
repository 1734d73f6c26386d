#include <gtest/gtest.h>

#include <filesystem>

#include "providers/disk/finding/SysfsDisks.h"
#include "tests/providers/FileTree.h"

namespace providers::disk {
namespace {

using namespace std::string_literals;

struct Machine : FileTree {
  Machine& disk(const std::string& name, const std::string& sectors = "2048000\n") {
    add("block/" + name + "/size", sectors);
    add("block/" + name + "/queue/logical_block_size", "512\n");
    add("block/" + name + "/queue/physical_block_size", "4096\n");
    add("block/" + name + "/queue/rotational", "1\n");
    add("block/" + name + "/dev", "8:0\n");
    return *this;
  }
  Machine& file(const std::string& path, const std::string& content) {
    add("block/" + path, content);
    return *this;
  }
  std::vector<Disk> find() const { return findSysfsDisks(root()); }
  std::vector<std::string> names() const {
    std::vector<std::string> list;
    for (const Disk& disk : find()) list.push_back(disk.name);
    return list;
  }
};

TEST(SysfsDisks, AMachineWithoutAnyHasNone) {
  EXPECT_TRUE(Machine().names().empty());
  EXPECT_TRUE(findSysfsDisks("/nowhere").empty());
}

TEST(SysfsDisks, ComeInTheOrderInWhichPeopleCount) {
  Machine machine;
  for (const char* name : {"nvme10n1", "sdaa", "nvme2n1", "sdb", "sda", "vda", "mmcblk0"})
    machine.disk(name);
  EXPECT_EQ(machine.names(), (std::vector<std::string>{"mmcblk0", "nvme2n1", "nvme10n1", "sda",
                                                       "sdb", "sdaa", "vda"}));
}

TEST(SysfsDisks, WhatIsNoDriveOfItsOwnIsLeftOut) {
  Machine machine;
  for (const char* name : {"loop0", "ram0", "zram0", "dm-0", "md127", "sr0", "fd0", "nbd0", "zd0",
                           "mmcblk0boot0", "mmcblk0rpmb"})
    machine.disk(name);
  machine.disk("sdc", "0\n");                                 // a card reader without a card
  machine.disk("nvme0c0n1").file("nvme0c0n1/hidden", "1\n");  // a path to another one
  machine.disk("sdd").file("sdd/device/type", "5\n");         // an optical drive
  EXPECT_EQ(machine.names(), std::vector<std::string>{});
}

TEST(SysfsDisks, AnAtaDiskIsKnownByWhatTheKernelKeepsOfIt) {
  Machine machine;
  machine.disk("sda")
      .file("sda/device/vendor", "ATA     \n")
      .file("sda/device/model", "ACME  Disk 4T \n")
      .file("sda/device/rev", "A1B2\n")
      .file("sda/device/vpd_pg80", "\0\x80\0\x08  Z1-99 "s);
  const Disk disk = machine.find().at(0);
  EXPECT_EQ(disk.bus, Bus::Ata);
  EXPECT_EQ(disk.model, "ACME Disk 4T");
  EXPECT_EQ(disk.serial, "Z1-99");
  EXPECT_EQ(disk.firmware, "A1B2");
  EXPECT_EQ(disk.node, "/dev/sda");
  EXPECT_EQ(disk.number, "8:0");
  EXPECT_EQ(disk.bytes, 2048000U * 512);
  EXPECT_EQ(disk.logicalBlock, 512U);
  EXPECT_EQ(disk.physicalBlock, 4096U);
  EXPECT_TRUE(disk.rotational);
}

TEST(SysfsDisks, AnNvmeDiskAndAVirtualOneHaveTheirNamesElsewhere) {
  Machine machine;
  machine.disk("nvme0n1")
      .file("nvme0n1/device/model", "Fast\n")
      .file("nvme0n1/device/serial", "S1   \n")
      .file("nvme0n1/device/firmware_rev", "2.0\n");
  machine.disk("vda").file("vda/serial", "V1").file("vda/device/vendor", "0x1af4\n");
  auto disks = machine.find();
  EXPECT_EQ(disks.at(0).bus, Bus::Nvme);
  EXPECT_EQ(disks.at(0).serial, "S1");
  EXPECT_EQ(disks.at(0).firmware, "2.0");
  EXPECT_EQ(disks.at(1).bus, Bus::Virtual);
  EXPECT_EQ(disks.at(1).model, "Virtual Disk");
  askSerial(disks.at(1));
  EXPECT_EQ(disks.at(1).serial, "V1");
}

TEST(SysfsDisks, ADiskThatWouldHaveToBeAskedForItsSerialNumberIsNotForAListing) {
  Machine machine;
  machine.disk("vda").file("vda/serial", "V1").file("vda/device/vendor", "0x1af4\n");
  EXPECT_EQ(machine.find().at(0).serial, "");
}

TEST(SysfsDisks, AScsiDiskHasItsVendorInItsName) {
  Machine machine;
  machine.disk("sda").file("sda/device/vendor", "ACME\n").file("sda/device/model", "X\n");
  EXPECT_EQ(machine.find().at(0).model, "ACME X");
  EXPECT_EQ(machine.find().at(0).bus, Bus::Scsi);
}

TEST(SysfsDisks, PartitionsAreKnownByTheirPlace) {
  Machine machine;
  machine.disk("sda")
      .file("sda/sda2/partition", "2\n")
      .file("sda/sda2/start", "4096\n")
      .file("sda/sda2/size", "8\n")
      .file("sda/sda1/partition", "1\n")
      .file("sda/sda1/start", "2048\n")
      .file("sda/sda1/size", "2048\n")
      .file("sda/sda1/dev", "8:1\n")
      .file("sda/sda1/holders/dm-0/dev", "254:0\n");
  const Disk disk = machine.find().at(0);
  ASSERT_EQ(disk.partitions.size(), 2U);
  EXPECT_EQ(disk.partitions[0].name, "sda1");
  EXPECT_EQ(disk.partitions[0].start, 2048U * 512);
  EXPECT_EQ(disk.partitions[1].bytes, 8U * 512);
  EXPECT_EQ(disk.devices, (std::vector<std::string>{"8:0", "8:1", "254:0"}));
}

TEST(SysfsDisks, WhatLiesOnOtherDisksTooIsNotTakenForItsOwn) {
  Machine machine;
  machine.disk("sda")
      .file("sda/sda1/partition", "1\n")
      .file("sda/sda1/holders/md0/dev", "9:0\n")
      .file("sda/sda1/holders/md0/slaves/sda1/dev", "8:1\n")
      .file("sda/sda1/holders/md0/slaves/sdb1/dev", "8:17\n")
      .file("sda/sda1/holders/md0/holders/dm-0/dev", "254:0\n")
      .file("sda/sda1/holders/dm-1/dev", "254:1\n")
      .file("sda/sda1/holders/dm-1/slaves/sda1/dev", "8:1\n");
  EXPECT_EQ(machine.find().at(0).devices, (std::vector<std::string>{"8:0", "254:1"}));
}

TEST(SysfsDisks, ASizeBeyondAllMeasureDoesNotBecomeASmallOne) {
  Machine machine;
  machine.disk("sda", "36028797018963969\n");
  EXPECT_EQ(machine.find().at(0).bytes, UINT64_MAX / 512 * 512);
}

TEST(SysfsDisks, NonsenseInTheFilesIsTakenForNothing) {
  Machine machine;
  machine.disk("sda")
      .file("sda/queue/logical_block_size", "513\n")
      .file("sda/queue/physical_block_size", "-4096\n")
      .file("sda/device/model", "\x1b[31mRed\x01|,\xff\n")
      .file("sda/device/vpd_pg80",
            "\0\x80\xff\xff"
            "AB"s);
  const Disk disk = machine.find().at(0);
  EXPECT_EQ(disk.logicalBlock, 512U);
  EXPECT_EQ(disk.physicalBlock, 512U);
  EXPECT_EQ(disk.model, "[31mRed |,");
  EXPECT_EQ(disk.serial, "AB");
  EXPECT_EQ(displayName(disk), "[31mRed    1.0 GB");
}

TEST(SysfsDisksPosix, ThePathTellsWhereADiskSits) {
  Machine machine;
  const std::string device = "devices/pci0000:00/0000:00:1f.2/ata1/host0/target0:0:1/0:0:1:0";
  machine.add(device + "/block/sda/size", "8\n")
      .add(device + "/enclosure_device:SLOT 03/slot", "3\n")
      .add("block/.keep", "");
  std::filesystem::create_directory_symlink("../../../0:0:1:0",
                                            machine.root() + "/" + device + "/block/sda/device");
  std::filesystem::create_directory_symlink("../" + device + "/block/sda",
                                            machine.root() + "/block/sda");
  const Disk disk = machine.find().at(0);
  EXPECT_EQ(disk.pciAddress, "0000:00:1f.2");
  EXPECT_EQ(disk.scsiAddress, "0:0:1:0");
  EXPECT_EQ(disk.slot, "SLOT 03");
  EXPECT_EQ(describe(disk), "sda (slot SLOT 03)");
}

TEST(SysfsDisksPosix, AnNvmeDiskIsInTheSlotOfItsBoard) {
  Machine machine;
  const std::string controller = "devices/pci0000:00/0000:00:01.0/0000:02:00.0/nvme/nvme0";
  machine.add(controller + "/nvme0n1/size", "8\n")
      .add("bus/pci/slots/5/address", "0000:02:00\n")
      .add("bus/pci/slots/4/address", "0000:01:00\n")
      .add("block/.keep", "");
  std::filesystem::create_directory_symlink("../" + controller + "/nvme0n1",
                                            machine.root() + "/block/nvme0n1");
  const Disk disk = machine.find().at(0);
  EXPECT_EQ(disk.pciAddress, "0000:02:00.0");
  EXPECT_EQ(disk.slot, "5");
}

TEST(SysfsDisksPosix, ANameThatIsNoIdentifierIsMadeOneAndStillLeadsToItsDisk) {
  Machine machine;
  machine.disk("x|\x1b[2J,y!d0").file("x|\x1b[2J,y!d0/x|\x1b[2J,y!d0\n1/partition", "1\n");
  const Disk disk = machine.find().at(0);
  EXPECT_EQ(disk.name, "x_ [2J_y!d0");
  EXPECT_EQ(disk.node, "/dev/x|\x1b[2J,y/d0");
  EXPECT_EQ(disk.partitions.at(0).name, "x| [2J,y!d0 1");
}

TEST(CapacityText, IsRoundedAsDrivesAreSold) {
  EXPECT_EQ(capacityText(0), "0 B");
  EXPECT_EQ(capacityText(512), "512 B");
  EXPECT_EQ(capacityText(999999), "1.0 MB");
  EXPECT_EQ(capacityText(4000787030016), "4.0 TB");
}

}  // namespace
}  // namespace providers::disk
