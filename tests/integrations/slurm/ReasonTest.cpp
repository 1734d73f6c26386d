#include <gtest/gtest.h>

#include "integrations/slurm/Reason.h"

namespace slurm {
namespace {

Finding memoryFault() {
  Finding finding{true,
                  "DIAGS: Memory Self Addressing",
                  "mem0",
                  "System Memory",
                  "Tested 1 GiB",
                  "Address 0x1: wrote 0x0, read 0x2, failing bits 17\n"
                  "  at physical address 0x1, 3 errors on this page, failing bits 17\n"
                  "  Memory module DIMM_A2 (serial S1, part P1)\n"
                  "  Tested alone 8 times: failed 8 times, a hard fault, failing bits 17\n",
                  3,
                  {}};
  finding.diagnoses = {{true,
                        false,
                        "Tested 1 GiB; location DIMM_A2; serial number S1",
                        "Memory module P1",
                        {"Replace memory module DIMM_A2 (serial S1, part P1)"}}};
  return finding;
}

Finding processorFault() {
  Finding finding{true, "DIAGS: Processor Instruction", "cpu0", "CPU", "Tested 8 threads", "", 2,
                  {}};
  finding.diagnoses = {{true,
                        false,
                        "Tested 8 of 8 threads; location CPU1",
                        "Processor 1",
                        {"Replace processor 1.", "until then keep CPU 5 off"}}};
  return finding;
}

Finding diskFault() {
  Finding finding{true, "DIAGS: Disk Health", "nvme0", "Disk", "1 finding", "", 0, {}};
  finding.diagnoses = {{true, false, "Spare blocks are used up", "", {}}};
  return finding;
}

Finding warning() {
  Finding finding{false, "DIAGS: Sensors", "sensors", "Sensors", "1 finding", "", 0, {}};
  finding.diagnoses = {{false, false, "fan1 stands still", "fan1", {"Look at fan1"}}};
  return finding;
}

TEST(ASlurmReason, NamesTheModuleItsErrorsAndTheStuckBit) {
  EXPECT_EQ(reasonFrom({memoryFault()}, false), "DIMM_A2: 3 memory errors, stuck bit 17");
}

TEST(ASlurmReason, CallsABitStuckOnlyIfItFailedAgain) {
  Finding soft = memoryFault();
  soft.record = "failing bits 17\n  Tested alone 8 times: no error came back, a soft error\n";
  soft.errors = 1;
  EXPECT_EQ(reasonFrom({soft}, false), "DIMM_A2: 1 memory error");
}

struct BitsRow {
  const char* name;
  const char* lines;
  const char* text;
};

class SlurmStuckBits : public testing::TestWithParam<BitsRow> {};

TEST_P(SlurmStuckBits, AreThoseOfAllPages) {
  Finding finding = memoryFault();
  finding.record = GetParam().lines;
  EXPECT_EQ(reasonFrom({finding}, false),
            std::string("DIMM_A2: 3 memory errors") + GetParam().text);
}

const BitsRow kBitsRows[] = {
    {"Two", "a hard fault, failing bits 3, 17\n", ", stuck bits 3, 17"},
    {"OfTwoPages", "a hard fault, failing bits 17\na hard fault, failing bits 3, 17\n",
     ", stuck bits 3, 17"},
    {"Many", "a hard fault, failing bits 1, 2, 3, 4, 5\n", ", 5 stuck bits"},
    {"None", "a hard fault, failing bits none\n", ""},
    {"Nonsense", "a hard fault, failing bits 64, 99999999999999999999\n", ""},
};
INSTANTIATE_TEST_SUITE_P(All, SlurmStuckBits, testing::ValuesIn(kBitsRows),
                         [](const auto& row) { return row.param.name; });

TEST(ASlurmReason, TellsOfANumberBeyondItsLimitOnlyIfTheTestSaysNoMore) {
  Finding finding = memoryFault();
  finding.diagnoses.push_back({true, true, "Errors 3 is above 0", "System Memory", {}});
  EXPECT_EQ(reasonFrom({finding}, false), "DIMM_A2: 3 memory errors, stuck bit 17");
  Finding slow = diskFault();
  slow.diagnoses = {{true, true, "ReadRate 100 MB/s is below 200", "sda", {}}};
  EXPECT_EQ(reasonFrom({slow}, false), "sda: ReadRate 100 MB/s is below 200");
}

TEST(ASlurmReason, SaysWhatToDoAboutOtherParts) {
  EXPECT_EQ(reasonFrom({processorFault()}, false), "CPU1: 2 errors; Replace processor 1");
}

TEST(ASlurmReason, NamesTheDeviceWhereNoPartIsKnown) {
  EXPECT_EQ(reasonFrom({diskFault()}, false), "nvme0: Spare blocks are used up");
}

TEST(ASlurmReason, NamesTheTestWhereItOnlyFailed) {
  Finding bare = diskFault();
  bare.diagnoses.clear();
  EXPECT_EQ(reasonFrom({bare}, false), "nvme0: DIAGS: Disk Health failed, 1 finding");
}

TEST(ASlurmReason, TellsAPartOnce) {
  EXPECT_EQ(reasonFrom({memoryFault(), memoryFault(), diskFault()}, false),
            "DIMM_A2: 3 memory errors, stuck bit 17; nvme0: Spare blocks are used up");
}

TEST(ASlurmReason, LeavesWarningsOutUnlessAsked) {
  EXPECT_EQ(reasonFrom({warning()}, false), "");
  EXPECT_EQ(reasonFrom({warning()}, true), "fan1: fan1 stands still; Look at fan1");
  EXPECT_EQ(reasonFrom({warning(), diskFault()}, false), "nvme0: Spare blocks are used up");
}

TEST(ASlurmReason, OfManyPartsSaysHowManyMore) {
  std::vector<Finding> many;
  for (int i = 0; i < 30; ++i) {
    many.push_back(diskFault());
    many.back().device = "nvme" + std::to_string(i);
  }
  const std::string reason = reasonFrom(many, false);
  EXPECT_LE(reason.size(), kLongestReason);
  EXPECT_EQ(reason.substr(reason.size() - 13), "; and 25 more") << reason;
}

struct CleanRow {
  const char* name;
  const char* text;
  const char* clean;
};

class SlurmReasonTexts : public testing::TestWithParam<CleanRow> {};

TEST_P(SlurmReasonTexts, AreOnePrintableLine) {
  EXPECT_EQ(asReason(GetParam().text), GetParam().clean);
}

const CleanRow kCleanRows[] = {
    {"LineBreaks", " two\n lines\t here \r\n", "two lines here"},
    {"Escape", "red \x1b[31m text", "red ?[31m text"},
    {"Quotes", "the \"big\" one\\", "the 'big' one?"},
    {"Foreign", "K\xc3\xbchler", "K?hler"},
    {"NoUtf8", "a\xff\x01z", "a??z"},
    {"Empty", "", ""},
};
INSTANTIATE_TEST_SUITE_P(All, SlurmReasonTexts, testing::ValuesIn(kCleanRows),
                         [](const auto& row) { return row.param.name; });

TEST(ASlurmReason, IsNeverLongerThanCanBeRead) {
  EXPECT_EQ(asReason(std::string(5000, 'x')), std::string(kLongestReason - 3, 'x') + "...");
}

}  // namespace
}  // namespace slurm
