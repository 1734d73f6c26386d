#include <gtest/gtest.h>

#include "providers/memory/MemoryDiagnostic.h"

namespace providers {
namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1024} * 1024;
constexpr std::uint64_t kGibi = 1024 * kMebi;

MemoryReport goodReport() {
  MemoryReport report;
  report.patterns = {{"Random", 3 * kGibi, 1.5, 0}, {"Checkerboard", 512 * kMebi, 0, 0}};
  report.testedBytes = 256 * kMebi;
  report.rounds = 3;
  return report;
}

const MemorySize kSize{24 * kGibi, 24 * kGibi, 8 * kGibi};

TEST(MemoryReportText, AGoodRunTellsSizeShareAndRates) {
  const Outcome outcome = memoryOutcome(goodReport(), kSize, true, 42);
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.text,
            "Tested 256 MiB of 24.0 GiB (1.0 %), 2 patterns, 0 errors\n"
            "Random: 3.0 GiB at 2.0 GiB/s, 0 errors\n"
            "Checkerboard: 512 MiB at 0.0 GiB/s, 0 errors\n"
            "3 rounds, seed 42, memory locked in place\n");
  EXPECT_TRUE(outcome.notes.empty());
}

TEST(MemoryReportText, AFailedRunTellsWhereAndWhichBits) {
  MemoryReport report = goodReport();
  report.errors = report.patterns[0].errors = 1;
  report.faults = {{"Random", 0x618, 0xF0, 0xF3}};
  report.rounds = 1;
  const Outcome outcome = memoryOutcome(report, kSize, false, 42);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_EQ(outcome.text,
            "Tested 256 MiB of 24.0 GiB (1.0 %), 2 patterns, 1 error\n"
            "Random: 3.0 GiB at 2.0 GiB/s, 1 error\n"
            "Checkerboard: 512 MiB at 0.0 GiB/s, 0 errors\n"
            "1 round, seed 42, memory not locked in place\n"
            "Offset 0x618, Random: wrote 0x00000000000000f0, read 0x00000000000000f3, "
            "wrong bits 0, 1\n");
}

TEST(MemoryReportText, AFailedRunHasADeviceErrorRecordWithTheCounts) {
  MemoryReport report = goodReport();
  report.errors = report.patterns[0].errors = 20;
  report.faults = {{"Random", 8, 0, 1}};
  const Outcome outcome = memoryOutcome(report, kSize, false, 42);
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::DeviceErrors);
  EXPECT_NE(outcome.notes[0].text.find("and 19 further errors\n"), std::string::npos);
  ASSERT_EQ(outcome.errors.size(), 1U);
  EXPECT_EQ(outcome.errors[0].code, "Memory error: Random");
  EXPECT_EQ(outcome.errors[0].count, 20U);
}

TEST(MemoryReportText, AStoppedRunSaysSo) {
  MemoryReport report = goodReport();
  report.stopped = true;
  const Outcome outcome = memoryOutcome(report, kSize, true, 42);
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  EXPECT_NE(outcome.text.find("Stopped before the end\n"), std::string::npos);
}

TEST(MemoryReportText, AnErrorOutweighsAStop) {
  MemoryReport report = goodReport();
  report.stopped = true;
  report.errors = 1;
  EXPECT_EQ(memoryOutcome(report, kSize, true, 42).state, CompletionState::Failed);
}

TEST(MemoryReportText, AMemoryOfUnknownSizeIsNoDivisionByZero) {
  const Outcome outcome = memoryOutcome(goodReport(), {}, true, 42);
  EXPECT_EQ(outcome.text.substr(0, 33), "Tested 256 MiB of 0 MiB (0.0 %), ");
}

TEST(MemoryReportText, SizesAreShownInAUnitThatFits) {
  EXPECT_EQ(sizeText(0), "0 MiB");
  EXPECT_EQ(sizeText(kGibi - 1), "1023 MiB");
  EXPECT_EQ(sizeText(kGibi + kGibi / 2), "1.5 GiB");
}

}  // namespace
}  // namespace providers
