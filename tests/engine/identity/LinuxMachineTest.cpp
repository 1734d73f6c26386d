#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "engine/identity/LinuxMachine.h"
#include "tests/engine/identity/FirmwareTable.h"

namespace engine {
namespace {

namespace fs = std::filesystem;

/// A made-up machine: its folders /proc, /sys and /run in one of the test's own.
class LinuxMachineTest : public testing::Test {
 protected:
  LinuxMachineTest() {
    std::string pattern = (fs::temp_directory_path() / "machineXXXXXX").string();
    m_root = mkdtemp(pattern.data());
  }
  ~LinuxMachineTest() override { fs::remove_all(m_root); }

  void write(const std::string& name, const std::string& content) const {
    const fs::path path = m_root / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
  }
  void writeAll(const std::string& folder,
                const std::vector<std::pair<std::string, std::string>>& files) const {
    for (const auto& [name, content] : files) write(folder + "/" + name, content + "\n");
  }
  void link(const std::string& name, const std::string& target) const {
    fs::create_directories((m_root / name).parent_path());
    fs::create_symlink(target, m_root / name);
  }
  fs::path path(const std::string& name) const { return m_root / name; }

  Identity machine() const { return machineUnder(m_root.string()); }
  /// "kind|name|location|manufacturer|model|version|serial" of each part.
  std::vector<std::string> lines() const {
    std::vector<std::string> all;
    for (const Part& part : machine().parts) {
      all.push_back(part.kind + "|" + part.name + "|" + part.location + "|" + part.manufacturer +
                    "|" + part.model + "|" + part.version + "|" + part.serial);
    }
    return all;
  }

 private:
  fs::path m_root;
};

using Lines = std::vector<std::string>;

TEST_F(LinuxMachineTest, WhereNothingCanBeReadNothingIsSaid) {
  EXPECT_EQ(machine().host, "");
  EXPECT_EQ(machine().firmware, "");
  EXPECT_EQ(lines(), Lines());
}

TEST_F(LinuxMachineTest, TheHostHasItsName) {
  write("proc/sys/kernel/hostname", "bench-7\n");
  EXPECT_EQ(machine().host, "bench-7");
}

TEST_F(LinuxMachineTest, TheFirmwaresTableComesBeforeItsTexts) {
  write("sys/firmware/dmi/tables/DMI", FirmwareTable().firmware().system().bytes());
  writeAll("sys/class/dmi/id", {{"product_name", "Other"}, {"bios_version", "0"}});
  EXPECT_EQ(machine().firmware, "Maker X1 2.17 (03/12/2026)");
  EXPECT_EQ(lines(), Lines{"system|Box 9000||Maker|B9-X|rev 2|SYS-4711"});
}

TEST_F(LinuxMachineTest, WhoMayNotReadTheTableGetsItsTexts) {
  writeAll("sys/class/dmi/id", {{"bios_vendor", "Maker"},
                                {"bios_version", "2.17"},
                                {"sys_vendor", "Maker"},
                                {"product_name", "Box"},
                                {"product_version", "Not Specified"},
                                {"board_name", "B9"}});
  EXPECT_EQ(machine().firmware, "Maker 2.17");
  EXPECT_EQ(lines(), (Lines{"system|Box||Maker|||", "board|B9|||||"}));
}

TEST_F(LinuxMachineTest, AMachineWithATreeOfDevicesIsNamedByIt) {
  write("sys/firmware/devicetree/base/model", std::string("Small Board 4\0", 14));
  write("sys/firmware/devicetree/base/serial-number", std::string("100000004711\0", 13));
  EXPECT_EQ(lines(), Lines{"system|Small Board 4|||||100000004711"});
}

TEST_F(LinuxMachineTest, AVirtualMachineWithoutATableHasItsProcessors) {
  write("proc/cpuinfo",
        "processor\t: 0\nvendor_id\t: Chips\nmodel name\t: Chip 77\ncpu cores\t: 2\n\n"
        "processor\t: 1\nmodel name\t: Never Read\n");
  writeAll("sys/devices/system/cpu", {{"online", "0-7"},
                                      {"cpu0/topology/package_cpus_list", "0-1,4-5"},
                                      {"cpu2/topology/core_siblings_list", "2-3,6-7"}});
  EXPECT_EQ(lines(), (Lines{"processor|CPU 0: Chip 77|CPU 0|Chips||2 cores, 4 threads|",
                            "processor|CPU 1: Chip 77|CPU 1|Chips||2 cores, 4 threads|"}));
}

TEST_F(LinuxMachineTest, ListsOfProcessorsThatMakeNoSenseAreNone) {
  for (const char* list : {"", "x", "-1", "9-0", "0-99999999999999999999", "0-"}) {
    writeAll("sys/devices/system/cpu",
             {{"online", list}, {"cpu0/topology/package_cpus_list", "x"}});
    EXPECT_EQ(lines(), Lines()) << list;
  }
}

TEST_F(LinuxMachineTest, TheFirmwaresProcessorsComeBeforeTheSystems) {
  write("sys/firmware/dmi/tables/DMI", FirmwareTable().processor("CPU1", {}).bytes());
  writeAll("sys/devices/system/cpu", {{"online", "0"}, {"cpu0/topology/package_cpus_list", "0"}});
  EXPECT_EQ(lines(), Lines{"processor|CPU1: Chip 77|CPU1|Chips|CH77||C-1"});
}

TEST_F(LinuxMachineTest, EachKindOfDiskIsToldInItsOwnWay) {
  writeAll("sys/block/nvme0n1", {{"size", "3750748848"},
                                 {"device/model", "Flash 2"},
                                 {"device/serial", "NV-1  "},
                                 {"device/firmware_rev", "F1"}});
  writeAll("sys/block/sda", {{"size", "937703088"},
                             {"device/vendor", "ATA     "},
                             {"device/model", "Disk 3"},
                             {"device/rev", "0412"}});
  write("sys/block/sda/device/vpd_pg80", std::string("\0\x80\0\x08", 4) + "    SD-1trailing");
  writeAll("sys/block/sdb", {{"device/vendor", "Spinners"}, {"device/model", "Turner"}});
  writeAll(
      "sys/block/vda",
      {{"size", "2048"}, {"dev", "254:0"}, {"device/vendor", "0x1af4"}, {"serial", "asked for"}});
  write("run/udev/data/b254:0", "S:disk/by-id/x\nE:ID_SERIAL=VD-1\nG:systemd\n");
  EXPECT_EQ(lines(),
            (Lines{"disk|nvme0n1: Flash 2 1.9 TB|nvme0n1||Flash 2|F1|NV-1",
                   "disk|sda: Disk 3 480 GB|sda||Disk 3|0412|SD-1",
                   "disk|sdb: Turner|sdb|Spinners|Turner||", "disk|vda: 1 MB|vda||||VD-1"}));
}

TEST_F(LinuxMachineTest, WhatIsNoDiskOfItsOwnIsNone) {
  for (const char* name : {"loop0", "ram1", "zram0", "dm-0", "md127", "sr0", "fd0", "nbd3",
                           "mmcblk0boot0", "mmcblk0rpmb"}) {
    write(std::string("sys/block/") + name + "/device/model", "M");
  }
  write("sys/block/sdz/size", "2048");
  writeAll("sys/block/nvme0c0n1", {{"hidden", "1"}, {"device/model", "M"}});
  EXPECT_EQ(lines(), Lines());
}

TEST_F(LinuxMachineTest, DisksStandInTheOrderOfTheirNumbers) {
  for (const char* name : {"nvme10n1", "nvme2n1", "mmcblk0", "nvme2n10", "nvme2n9"}) {
    fs::create_directories(path(std::string("sys/block/") + name + "/device"));
  }
  Lines names;
  for (const Part& part : machine().parts) names.push_back(part.name);
  EXPECT_EQ(names, (Lines{"mmcblk0", "nvme2n1", "nvme2n9", "nvme2n10", "nvme10n1"}));
}

TEST_F(LinuxMachineTest, APageThatIsNoSerialNumberIsNone) {
  const std::string pages[] = {"", std::string("\0\x80\0", 3), std::string("\0\x83\0\x04WXYZ", 8),
                               std::string("\0\x80\0\0WXYZ", 8)};
  for (const std::string& page : pages) {
    write("sys/block/sda/device/vpd_pg80", page);
    EXPECT_EQ(lines(), Lines{"disk|sda|sda||||"});
  }
}

TEST_F(LinuxMachineTest, TheMachinesPortsAreKnownByTheirAddress) {
  const std::string net = "sys/class/net/";
  link("sys/devices/0000-03/driver", "../../bus/pci/drivers/fastnet");
  for (const char* name : {"eth0", "eth1", "eth2"}) {
    link(net + name + "/device", "../../../devices/0000-03");
  }
  write(net + "eth0/address", "00:1a:2b:3c:4d:5e\n");
  writeAll(net + "eth1",
           {{"address", "00:1a:2b:3c:4d:5e"}, {"bonding_slave/perm_hwaddr", "00:1a:2b:3c:4d:5f"}});
  write(net + "eth2/address", "00:00:00:00:00:00\n");
  EXPECT_EQ(lines(), (Lines{"port|eth0|0000-03|||driver fastnet|00:1a:2b:3c:4d:5e",
                            "port|eth1|0000-03|||driver fastnet|00:1a:2b:3c:4d:5f",
                            "port|eth2|0000-03|||driver fastnet|"}));
}

TEST_F(LinuxMachineTest, WhatIsNoDeviceIsNoPort) {
  write("sys/class/net/lo/address", "00:1a:2b:3c:4d:5e\n");
  write("sys/class/net/bonding_masters", "bond0\n");
  write("sys/class/net/eth0v0/device/physfn/vendor", "0x1af4\n");
  EXPECT_EQ(lines(), Lines());
}

TEST_F(LinuxMachineTest, OnlyPlainFilesAreRead) {
  fs::create_directories(path("sys/firmware/dmi/tables/DMI"));
  fs::create_directories(path("proc/sys/kernel"));
  ASSERT_EQ(mkfifo(path("proc/sys/kernel/hostname").c_str(), 0600), 0);
  link("proc/cpuinfo", "/dev/zero");
  fs::create_directories(path("sys/block/sda/device"));
  link("sys/block/sda/device/model", "model");
  EXPECT_EQ(machine().host, "");
  EXPECT_EQ(lines(), Lines{"disk|sda|sda||||"});
}

TEST_F(LinuxMachineTest, OfATableWithoutEndTheBeginningIsRead) {
  std::string bytes = FirmwareTable().system().bytes();
  while (bytes.size() < 4 * 1024 * 1024) bytes += FirmwareTable().add(200, 255, {}).bytes();
  write("sys/firmware/dmi/tables/DMI", bytes + FirmwareTable().board().bytes());
  EXPECT_EQ(lines(), Lines{"system|Box 9000||Maker|B9-X|rev 2|SYS-4711"});
}

TEST_F(LinuxMachineTest, TextsFromAnywhereComeAsTheyAreButNotWithoutEnd) {
  write("sys/block/sda/device/model", "\x1b[2J\xFF|\u202e" + std::string(1'000'000, 'x'));
  const Part disk = machine().parts.front();
  EXPECT_EQ(disk.model, "\x1b[2J\xFF|\u202e" + std::string(256 - 9, 'x'));
}

TEST_F(LinuxMachineTest, ARecordOutsideOfItsFolderIsNotRead) {
  write("secret", "E:ID_SERIAL=SECRET\n");
  fs::create_directories(path("run/udev/data/b1"));
  fs::create_directories(path("sys/block/sda/device"));
  write("sys/block/sda/dev", "1/../../../../secret\n");
  EXPECT_EQ(lines(), Lines{"disk|sda|sda||||"});
}

}  // namespace
}  // namespace engine
