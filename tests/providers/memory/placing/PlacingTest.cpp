#include <gtest/gtest.h>

#include "providers/memory/placing/ErrorCounters.h"
#include "providers/memory/placing/MemoryModules.h"
#include "providers/memory/placing/PageMap.h"
#include "tests/engine/identity/FirmwareTable.h"
#include "tests/providers/FileTree.h"

namespace providers::memory {
namespace {

using engine::FirmwareTable;
using Number = FirmwareTable::Number;

constexpr std::uint64_t kGibi = std::uint64_t{1} << 30;
constexpr std::uint64_t kPresent = std::uint64_t{1} << 63;

/// A table whose page 3 has that entry.
std::string pageTable(std::uint64_t entry) {
  std::string table(24, '\0');
  for (unsigned byte = 0; byte < 8; ++byte) table += static_cast<char>(entry >> 8 * byte);
  return table;
}

struct PageRow {
  std::uint64_t entry;
  std::uint64_t address;  ///< 0: none
  const char* why;
};

TEST(PageMap, TellsTheAddressOrWhyNot) {
  for (const PageRow& row :
       {PageRow{kPresent | 0x5A5, 0x5A5678, ""},
        PageRow{kPresent | 0xFFFFFFFFFF, 0xFFFFFFFFFF678, ""},
        PageRow{std::uint64_t{1} << 62 | 9, 0, "the page is not in memory"},
        PageRow{kPresent, 0, "only the administrator may know it (CAP_SYS_ADMIN)"}}) {
    FileTree tree;
    tree.add("pagemap", pageTable(row.entry));
    const PhysicalPlace place = readPhysicalPlace(tree.root() + "/pagemap", 0x3678);
    EXPECT_EQ(place.address.value_or(0), row.address);
    EXPECT_EQ(place.whyNot, row.why);
  }
}

TEST(PageMap, ThatIsNotThereOrTooShortSaysSo) {
  FileTree tree;
  tree.add("pagemap", pageTable(kPresent | 1));
  EXPECT_NE(readPhysicalPlace(tree.root() + "/nothing", 0).whyNot.find("cannot be opened"),
            std::string::npos);
  EXPECT_NE(readPhysicalPlace(tree.root() + "/pagemap", 0x4000).whyNot.find("no such page"),
            std::string::npos);
}

/// Modules of 4 GiB with the handles 0x1100 and up, in the array 0x1000.
FirmwareTable modules(unsigned count) {
  FirmwareTable table;
  for (unsigned i = 0; i < count; ++i) {
    const std::string name(1, static_cast<char>('1' + i));
    table.add(17, 0x28, {{0x10, "DIMM_A" + name}, {0x18, "S" + name}, {0x1A, "P" + name}},
              {{2, 2, 0x1100 + i}, {4, 2, 0x1000}, {0x0C, 2, 4096}});
  }
  return table;
}

/// Kibibytes from first to last, of that module or array.
void addRange(FirmwareTable& table, unsigned type, unsigned handle, std::uint64_t first,
              std::uint64_t last) {
  table.add(type, 0x23, {}, {{4, 4, first}, {8, 4, last}, {0x0C, 2, handle}});
}

std::string namesAt(const FirmwareTable& table, std::uint64_t address) {
  std::string names;
  for (const MemoryModule& module : modulesAt(moduleTable(table.bytes()), address))
    names += moduleName(module) + ";";
  return names;
}

TEST(MemoryModules, OneThatHasTheAddressIsIt) {
  FirmwareTable table = modules(2);
  addRange(table, 20, 0x1100, 0, 4 * 1024 * 1024 - 1);
  addRange(table, 20, 0x1101, 4 * 1024 * 1024, 8 * 1024 * 1024 - 1);
  addRange(table, 19, 0x1000, 0, 8 * 1024 * 1024 - 1);
  EXPECT_EQ(namesAt(table, 0), "DIMM_A1 (serial S1, part P1);");
  EXPECT_EQ(namesAt(table, 4 * kGibi - 1), "DIMM_A1 (serial S1, part P1);");
  EXPECT_EQ(namesAt(table, 4 * kGibi), "DIMM_A2 (serial S2, part P2);");
  EXPECT_EQ(namesAt(table, 8 * kGibi - 1), "DIMM_A2 (serial S2, part P2);");
  EXPECT_EQ(namesAt(table, 8 * kGibi), "");
}

TEST(MemoryModules, OfAnInterleavedAddressAreAllThatShareIt) {
  FirmwareTable table = modules(2);
  addRange(table, 20, 0x1100, 0, 8 * 1024 * 1024 - 1);
  addRange(table, 20, 0x1101, 0, 8 * 1024 * 1024 - 1);
  EXPECT_EQ(namesAt(table, 5), "DIMM_A1 (serial S1, part P1);DIMM_A2 (serial S2, part P2);");
}

TEST(MemoryModules, WithoutRangesOfTheirOwnAreThoseOfTheArray) {
  FirmwareTable one = modules(1);
  addRange(one, 19, 0x1000, 0, 4 * 1024 * 1024 - 1);
  EXPECT_EQ(namesAt(one, 77), "DIMM_A1 (serial S1, part P1);");
  EXPECT_EQ(namesAt(one, 4 * kGibi), "");
  EXPECT_EQ(namesAt(modules(2), 0), "") << "nobody says where they are";
}

TEST(MemoryModules, BeyondFourTebibytesStandInTheWideNumbers) {
  FirmwareTable table = modules(1);
  table.add(19, 0x1F, {},
            {{4, 4, 0xFFFFFFFF},
             {8, 4, 0xFFFFFFFF},
             {0x0C, 2, 0x1000},
             {0x0F, 8, 8192 * kGibi},
             {0x17, 8, 9000 * kGibi - 1}});
  EXPECT_NE(namesAt(table, 9000 * kGibi - 1), "");
  EXPECT_EQ(namesAt(table, 9000 * kGibi), "");
  EXPECT_EQ(namesAt(table, 8192 * kGibi - 1), "");
}

TEST(MemoryModules, EmptySlotsAreNone) {
  FirmwareTable table;
  table.add(17, 0x28, {{0x10, "DIMM_B1"}}, {{2, 2, 7}, {0x0C, 2, 0}});
  EXPECT_TRUE(moduleTable(table.bytes()).modules.empty());
}

TEST(MemoryModules, NamesThatCannotBeShownAreMadeSo) {
  FirmwareTable table;
  table.add(17, 0x28, {{0x10, " DIMM\x1b[2J "}}, {{2, 2, 7}, {0x0C, 2, 4096}});
  ASSERT_EQ(moduleTable(table.bytes()).modules.size(), 1U);
  EXPECT_EQ(moduleName(moduleTable(table.bytes()).modules[0]), "DIMM?[2J");
}

#ifdef __linux__
// Catches a way to read that works on a file and that the system's table refuses.
TEST(PageMap, OfThisProcessHasItsPages) {
  if (!std::ifstream("/proc/self/pagemap")) GTEST_SKIP() << "there is no table here";
  alignas(4096) static volatile char page[4096];
  page[100] = 1;
  const PhysicalPlace place = physicalPlace(const_cast<const char*>(page + 100));
  if (place.address) {
    EXPECT_EQ(*place.address % 4096, 100U);
  } else {
    EXPECT_EQ(place.whyNot, "only the administrator may know it (CAP_SYS_ADMIN)");
  }
}
#endif

TEST(ErrorCounters, AreThoseOfTheModules) {
  FileTree tree;
  const std::string mc = "sys/devices/system/edac/mc/mc0/";
  tree.add(mc + "dimm1/dimm_label", "CPU0_DIMM_B1\n")
      .add(mc + "dimm1/dimm_ce_count", "3\n")
      .add(mc + "dimm1/dimm_ue_count", "1\n")
      .add(mc + "dimm0/dimm_label", "\n")
      .add(mc + "dimm0/dimm_ce_count", "0\n")
      .add(mc + "csrow0/ce_count", "99\n")
      .add(mc + "mc_name", "x\n");
  const std::vector<ErrorCounter> list = readErrorCounters(tree.root());
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].name(), "mc0/dimm0");
  EXPECT_EQ(list[1].name(), "CPU0_DIMM_B1");
  EXPECT_EQ(list[1].corrected, 3U);
  EXPECT_EQ(list[1].uncorrected, 1U);
}

TEST(ErrorCounters, OfAnOldDriverAreThoseOfTheRows) {
  FileTree tree;
  tree.add("sys/devices/system/edac/mc/mc1/csrow2/ce_count", "5\n");
  ASSERT_EQ(readErrorCounters(tree.root()).size(), 1U);
  EXPECT_EQ(readErrorCounters(tree.root())[0].name(), "mc1/csrow2");
  EXPECT_TRUE(readErrorCounters(tree.root() + "/nowhere").empty());
}

TEST(ErrorCounters, ThatHaveRisenAreToldByHowMuch) {
  const std::vector<ErrorCounter> before{{"a", "", 1, 0}, {"b", "", 7, 2}};
  const std::vector<ErrorCounter> after{{"a", "", 1, 0}, {"b", "", 9, 2}, {"c", "", 0, 1}};
  const std::vector<ErrorCounter> more = risen(before, after);
  ASSERT_EQ(more.size(), 2U);
  EXPECT_EQ(more[0].place, "b");
  EXPECT_EQ(more[0].corrected, 2U);
  EXPECT_EQ(more[0].uncorrected, 0U);
  EXPECT_EQ(more[1].place, "c");
}

}  // namespace
}  // namespace providers::memory
