#include <gtest/gtest.h>

#include "engine/identity/Smbios.h"
#include "tests/engine/identity/FirmwareTable.h"

namespace engine {
namespace {

using Number = FirmwareTable::Number;

/// All that is said of a part, in one line.
std::string lineOf(const Part& part) {
  return part.kind + "|" + part.name + "|" + part.location + "|" + part.manufacturer + "|" +
         part.model + "|" + part.version + "|" + part.serial;
}

std::vector<std::string> linesOf(const FirmwareTable& table) {
  std::vector<std::string> lines;
  for (const Part& part : identityOfSmbios(table.bytes()).parts) lines.push_back(lineOf(part));
  return lines;
}

FirmwareTable server() {
  FirmwareTable table;
  table.firmware().system().board();
  for (int i = 0; i < 8; ++i) {
    table.module("DIMM " + std::to_string(i), "RAM-" + std::to_string(i), usualModule());
  }
  return table.processor("CPU1", {{0x23, 1, 16}, {0x25, 1, 32}}).end();
}

TEST(Smbios, AServerIsToldPartByPart) {
  EXPECT_EQ(identityOfSmbios(server().bytes()).firmware, "Maker X1 2.17 (03/12/2026)");
  const std::vector<std::string> lines = linesOf(server());
  ASSERT_EQ(lines.size(), 11U);
  EXPECT_EQ(lines[0], "system|Box 9000||Maker|B9-X|rev 2|SYS-4711");
  EXPECT_EQ(lines[1], "board|B9|main|Maker||1.1|BRD-1");
  EXPECT_EQ(lines[2], "processor|CPU1: Chip 77|CPU1|Chips|CH77|16 cores, 32 threads|C-1");
  EXPECT_EQ(lines[3], "memory|DIMM 0: 16 GiB DDR4 3200 MT/s|NODE 0, DIMM 0|Rams|R-16G|fw 3|RAM-0");
  EXPECT_EQ(lines[10], "memory|DIMM 7: 16 GiB DDR4 3200 MT/s|NODE 0, DIMM 7|Rams|R-16G|fw 3|RAM-7");
}

TEST(Smbios, NothingBehindTheEndCounts) {
  EXPECT_EQ(linesOf(FirmwareTable().system().end().board()).size(), 1U);
}

struct ModuleRow {
  const char* name;
  std::vector<Number> numbers;
  const char* told;  ///< the module's name; empty where there is none
};

class ModulesOf : public testing::TestWithParam<ModuleRow> {};

TEST_P(ModulesOf, AnySizeAndSpeedAreNamed) {
  const FirmwareTable table = FirmwareTable().module("A1", "S", GetParam().numbers);
  const Identity identity = identityOfSmbios(table.bytes());
  const std::string told = identity.parts.empty() ? "" : identity.parts.front().name;
  EXPECT_EQ(told, GetParam().told);
}

const ModuleRow kModuleRows[] = {
    {"AnEmptySlotIsNone", {{0x0C, 2, 0}}, ""},
    {"AnUnknownSizeIsNone", {{0x0C, 2, 0xFFFF}}, ""},
    {"Megabytes", {{0x0C, 2, 512}}, "A1: 512 MiB"},
    {"Kilobytes", {{0x0C, 2, 0x8000 + 640}}, "A1: 640 KiB"},
    {"NoRoundNumber", {{0x0C, 2, 1536}}, "A1: 1536 MiB"},
    {"TooLargeForTwoBytes", {{0x0C, 2, 0x7FFF}, {0x1C, 4, 65536}}, "A1: 64 GiB"},
    {"TheLargest", {{0x0C, 2, 0x7FFF}, {0x1C, 4, 0xFFFFFFFF}}, "A1: 2147483647 MiB"},
    {"TheSpeedAtWhichItRuns",
     {{0x0C, 2, 1024}, {0x12, 1, 0x22}, {0x15, 2, 5600}, {0x20, 2, 4800}},
     "A1: 1 GiB DDR5 4800 MT/s"},
    {"ASpeedTooLargeForTwoBytes",
     {{0x0C, 2, 1024}, {0x20, 2, 0xFFFF}, {0x58, 4, 70000}},
     "A1: 1 GiB 70000 MT/s"},
    {"AnUnknownTechnology", {{0x0C, 2, 1024}, {0x12, 1, 0xEE}}, "A1: 1 GiB"},
};
INSTANTIATE_TEST_SUITE_P(All, ModulesOf, testing::ValuesIn(kModuleRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct ProcessorRow {
  const char* name;
  std::vector<Number> numbers;
  const char* told;  ///< the counts; "none" where there is no processor
};

class ProcessorsOf : public testing::TestWithParam<ProcessorRow> {};

TEST_P(ProcessorsOf, CoresAndThreadsAreCounted) {
  const FirmwareTable table = FirmwareTable().processor("P0", GetParam().numbers);
  const Identity identity = identityOfSmbios(table.bytes());
  EXPECT_EQ(identity.parts.empty() ? "none" : identity.parts.front().version, GetParam().told);
}

const ProcessorRow kProcessorRows[] = {
    {"OneOfEach", {{0x23, 1, 1}, {0x25, 1, 1}}, "1 core, 1 thread"},
    {"MoreThanAByteHolds",
     {{0x23, 1, 0xFF}, {0x25, 1, 0xFF}, {0x2A, 2, 288}, {0x2E, 2, 576}},
     "288 cores, 576 threads"},
    {"NobodyKnows", {}, ""},
    {"AnEmptySocketIsNone", {{0x18, 1, 0}}, "none"},
    {"ACoprocessorIsNone", {{5, 1, 4}}, "none"},
};
INSTANTIATE_TEST_SUITE_P(All, ProcessorsOf, testing::ValuesIn(kProcessorRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Smbios, WhatMakersWriteForNothingIsLeftOut) {
  for (const char* filler : {"Not Specified", "To Be Filled By O.E.M.", "00000000", "  ", "None"}) {
    EXPECT_EQ(identityOfSmbios(FirmwareTable().system(filler).bytes()).parts.front().serial, "")
        << filler;
  }
  const FirmwareTable unnamed =
      FirmwareTable().add(1, 0x1B, {{4, "Default string"}, {5, "System Product Name"}});
  EXPECT_TRUE(identityOfSmbios(unnamed.bytes()).parts.empty());
}

TEST(Smbios, AShortStructureOfAnOldMachineHasWhatItHas) {
  const FirmwareTable old = FirmwareTable().add(17, 0x15, {{0x10, "A1"}}, {{0x0C, 2, 256}});
  EXPECT_EQ(linesOf(old), std::vector<std::string>{"memory|A1: 256 MiB|A1||||"});
}

TEST(Smbios, ATextThatIsNotThereIsEmpty) {
  const FirmwareTable table = FirmwareTable().add(1, 0x1B, {{5, "Box"}}, {{7, 1, 9}});
  EXPECT_EQ(linesOf(table), std::vector<std::string>{"system|Box|||||"});
}

TEST(Smbios, ALongTextIsCutBetweenCharacters) {
  std::string text = "x";
  while (text.size() < 100'000) text += "\xC3\xA4";
  const Part part = identityOfSmbios(FirmwareTable().system(text).bytes()).parts.front();
  EXPECT_EQ(part.serial, text.substr(0, 255));
}

TEST(Smbios, OfACutOffTableTheWholeStructuresStand) {
  const std::string whole = server().bytes();
  const Identity all = identityOfSmbios(whole);
  std::size_t most = 0;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Identity part = identityOfSmbios(whole.substr(0, size));
    EXPECT_GE(part.parts.size(), most);
    most = part.parts.size();
    for (const Part& one : part.parts) {
      EXPECT_EQ(lineOf(one).find_first_of('\0'), std::string::npos);
    }
  }
  EXPECT_EQ(most, all.parts.size());
}

TEST(Smbios, AStructureShorterThanItsHeadEndsTheReading) {
  std::string bytes = FirmwareTable().system().bytes() + std::string("\x02\x03\x00\x00\x00\x00", 6);
  EXPECT_EQ(identityOfSmbios(bytes + FirmwareTable().board().bytes()).parts.size(), 1U);
}

TEST(Smbios, OfAHugeTableSomeAreTaken) {
  FirmwareTable table;
  for (int i = 0; i < 3000; ++i) table.module("A1", "S", usualModule());
  EXPECT_EQ(identityOfSmbios(table.system().bytes()).parts.size(), 1025U);
}

}  // namespace
}  // namespace engine
