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

MemoryShare share(bool locked = true) {
  return {{24 * kGibi, 24 * kGibi, 8 * kGibi}, 256 * kMebi, 256 * kMebi, locked};
}

TEST(MemoryReportText, AGoodRunTellsSizeShareAndRates) {
  const Outcome outcome = memoryOutcome(goodReport(), share(), 42);
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.text,
            "Tested 256 MiB of 24.0 GiB (1.0 %), 2 patterns, 0 errors\n"
            "Random: 3.0 GiB at 2.0 GiB/s, 0 errors\n"
            "Checkerboard: 512 MiB at 0.0 GiB/s, 0 errors\n"
            "3 rounds, seed 42, memory locked in place\n");
  EXPECT_TRUE(outcome.notes.empty());
}

TEST(MemoryReportText, ARunTellsWhatItMeasured) {
  const ResultText text = resultText(memoryOutcome(goodReport(), share(), 42).measured);
  EXPECT_EQ(text.format,
            "|real64 Duration|string DurationUnits|uint64 TestedMemory|string TestedMemoryUnits"
            "|real64 Bandwidth|string BandwidthUnits|real64 RandomBandwidth"
            "|string RandomBandwidthUnits|uint64 Rounds|uint64 Errors|real64 ErrorsMaximum");
  EXPECT_EQ(text.data, "|1.500|s|256|MiB|2.333|GiB/s|2.000|GiB/s|3|0|0.000");
}

// Catches a share that is called tested though no round over it was whole.
TEST(MemoryReportText, ARunStoppedInItsFirstRoundTellsOfNoTestedMemory) {
  MemoryReport report;
  report.patterns = {{"Random", 0, 0.5, 0}};
  report.testedBytes = 256 * kMebi;
  report.stopped = true;
  const ResultText text = resultText(memoryOutcome(report, share(), 42).measured);
  EXPECT_EQ(text.data, "|0.500|s|0|0|0.000");
}

TEST(MemoryReportText, WithoutMemoryNothingIsMeasured) {
  EXPECT_TRUE(noMemoryOutcome(share()).measured.empty());
}

TEST(MemoryReportText, AFailedRunTellsWhereAndWhichBits) {
  MemoryReport report = goodReport();
  report.errors = report.patterns[0].errors = 1;
  report.faults = {{"Random", 0x618, 0xF0, 0xF3}};
  report.rounds = 1;
  const Outcome outcome = memoryOutcome(report, share(false), 42);
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
  const Outcome outcome = memoryOutcome(report, share(false), 42);
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
  const Outcome outcome = memoryOutcome(report, share(), 42);
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  EXPECT_NE(outcome.text.find("Stopped before the end\n"), std::string::npos);
}

TEST(MemoryReportText, AnErrorOutweighsAStop) {
  MemoryReport report = goodReport();
  report.stopped = true;
  report.errors = 1;
  EXPECT_EQ(memoryOutcome(report, share(), 42).state, CompletionState::Failed);
}

TEST(MemoryReportText, TheSummaryTellsTheCoverage) {
  EXPECT_EQ(memoryOutcome(goodReport(), share(), 42).summary, "Tested 256 MiB of 24.0 GiB (1.0 %)");
}

TEST(MemoryReportText, ARunWithLessMemoryThanAskedForSaysSo) {
  MemoryShare less = share();
  less.askedBytes = kGibi;
  const Outcome outcome = memoryOutcome(goodReport(), less, 42);
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "Tested 256 MiB of 24.0 GiB (1.0 %), cut short: low memory");
  EXPECT_EQ(outcome.text.substr(0, outcome.text.find("Random")),
            "Tested 256 MiB of 24.0 GiB (1.0 %), 2 patterns, 0 errors\n"
            "Cut short by lack of memory: 256 MiB instead of 1.0 GiB, with 8.0 GiB available\n");
}

TEST(MemoryReportText, ARunTooSlowForItsMemorySaysSo) {
  MemoryShare more = share();
  more.askedBytes = more.givenBytes = kGibi;
  const Outcome outcome = memoryOutcome(goodReport(), more, 42);
  EXPECT_EQ(outcome.summary, "Tested 256 MiB of 24.0 GiB (1.0 %), cut short: too slow");
  EXPECT_EQ(outcome.text.substr(0, outcome.text.find("Random")),
            "Tested 256 MiB of 24.0 GiB (1.0 %), 2 patterns, 0 errors\n"
            "Cut short by lack of time: 256 MiB instead of 1.0 GiB\n");
}

TEST(MemoryReportText, ARunThatLackedBothSaysBoth) {
  MemoryShare both = share();
  both.givenBytes = 2 * kGibi;
  both.askedBytes = 4 * kGibi;
  const Outcome outcome = memoryOutcome(goodReport(), both, 42);
  EXPECT_EQ(outcome.summary, "Tested 256 MiB of 24.0 GiB (1.0 %), cut short: low memory");
  EXPECT_NE(outcome.text.find("lack of memory: 2.0 GiB instead of 4.0 GiB"), std::string::npos);
  EXPECT_NE(outcome.text.find("lack of time: 256 MiB instead of 2.0 GiB"), std::string::npos);
}

TEST(MemoryReportText, ARunThatEndedInItsFirstRoundOnlyBegan) {
  MemoryReport report = goodReport();
  report.rounds = 0;
  report.stopped = true;
  const Outcome outcome = memoryOutcome(report, share(), 42);
  EXPECT_EQ(outcome.summary, "Began to test 256 MiB of 24.0 GiB");
  EXPECT_EQ(outcome.text.substr(0, outcome.text.find("Random")),
            "Began to test 256 MiB of 24.0 GiB, 2 patterns, 0 errors\n");
}

/// The Caption of a record has no more room.
TEST(MemoryReportText, TheSummaryOfTheLargestMachineHasItsPlace) {
  constexpr std::size_t kRoom = 64;
  MemoryReport report = goodReport();
  report.testedBytes = 1000 * kGibi;
  const MemorySize size{10000 * kGibi, 10000 * kGibi, 4000 * kGibi};
  for (const unsigned rounds : {0U, 1U}) {
    report.rounds = rounds;
    const std::string summary =
        memoryOutcome(report, {size, 9000 * kGibi, 1000 * kGibi, true}, 42).summary;
    EXPECT_LE(summary.size(), kRoom) << summary;
  }
  EXPECT_LE(noMemoryOutcome({size, kMebi, 0, false}).summary.size(), kRoom);
  EXPECT_LE(
      noMemoryOutcome({{size.installed, size.usable, 3 * kMebi}, kMebi, 0, false}).summary.size(),
      kRoom);
}

TEST(MemoryReportText, TheRateOfAShortPatternIsTold) {
  MemoryReport report = goodReport();
  report.patterns = {{"Random", 3 * kGibi, 0.5, 0}};
  EXPECT_NE(memoryOutcome(report, share(), 42).text.find("Random: 3.0 GiB at 6.0 GiB/s, "),
            std::string::npos);
}

TEST(MemoryReportText, TheFirstAndTheLastBitAreNamed) {
  MemoryReport report = goodReport();
  report.errors = report.patterns[0].errors = 1;
  report.faults = {{"Random", 0x12345678, 0, 0x8000000100000001}};
  EXPECT_EQ(memoryOutcome(report, share(), 42).notes.at(0).text,
            "Offset 0x12345678, Random: wrote 0x0000000000000000, read 0x8000000100000001, "
            "wrong bits 0, 32, 63\n");
}

TEST(MemoryReportText, EachPatternWithErrorsHasItsCountAndTheOthersNone) {
  MemoryReport report = goodReport();
  report.patterns.push_back({"Walking", kGibi, 1, 0x123456789});
  report.patterns[0].errors = 1;
  report.errors = 0x12345678A;
  const Outcome outcome = memoryOutcome(report, share(), 42);
  ASSERT_EQ(outcome.errors.size(), 2U);
  EXPECT_EQ(outcome.errors[0].code, "Memory error: Random");
  EXPECT_EQ(outcome.errors[0].count, 1U);
  EXPECT_EQ(outcome.errors[1].code, "Memory error: Walking");
  EXPECT_EQ(outcome.errors[1].count, 0xFFFFFFFFU) << "the most that can be counted";
  EXPECT_EQ(outcome.notes.at(0).errors.size(), 2U);
}

TEST(MemoryReportText, OneFurtherErrorIsOne) {
  MemoryReport report = goodReport();
  report.errors = report.patterns[0].errors = 2;
  report.faults = {{"Random", 8, 0, 1}};
  EXPECT_NE(memoryOutcome(report, share(), 42).text.find("and 1 further error\n"),
            std::string::npos);
}

TEST(MemoryReportText, AMemoryOfUnknownSizeIsNoDivisionByZero) {
  MemoryShare unknown = share();
  unknown.size = {};
  const Outcome outcome = memoryOutcome(goodReport(), unknown, 42);
  EXPECT_EQ(outcome.text.substr(0, 33), "Tested 256 MiB of 0 MiB (0.0 %), ");
}

TEST(MemoryReportText, SizesAreShownInAUnitThatFits) {
  EXPECT_EQ(sizeText(0), "0 MiB");
  EXPECT_EQ(sizeText(kGibi - 1), "1023 MiB");
  EXPECT_EQ(sizeText(kGibi), "1.0 GiB");
  EXPECT_EQ(sizeText(kGibi + kGibi / 2), "1.5 GiB");
  EXPECT_EQ(sizeText(100 * kGibi), "100.0 GiB");
  EXPECT_EQ(sizeText(~std::uint64_t{0}), "17179869184.0 GiB");
}

}  // namespace
}  // namespace providers
