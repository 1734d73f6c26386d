#include <gtest/gtest.h>

#include "providers/processor/ProcessorDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/ShowValue.h"

namespace providers {
namespace {

struct NameRow {
  const char* model;
  const char* shown;
};

TEST(DisplayName, HasNothingThatSeparatesIdentifiers) {
  for (const NameRow& row : {NameRow{"Fast CPU", "Fast CPU"}, NameRow{"A,B|C", "A B C"},
                             NameRow{"  Fast\t CPU , ", "Fast CPU"}, NameRow{"", "Processor"},
                             NameRow{" ,| ", "Processor"}, NameRow{"X\x01Y", "X Y"}})
    EXPECT_EQ(displayName(row.model), row.shown);
}

CpuPackage package(unsigned number, std::vector<unsigned> cpus) {
  CpuPackage result;
  result.number = number;
  result.model = "Fast CPU";
  result.cores = 1;
  result.megahertz = 2300;
  result.online = {0, 1};
  result.cpus = std::move(cpus);
  return result;
}

TEST(ProcessorReportText, AGoodRunTellsWhatWasTested) {
  ProcessorReport report;
  report.tested = {0, 1};
  report.operations = 13;
  report.fewestRuns = 400;
  report.mostRuns = 410;
  report.messages = 4000;
  report.seconds = 7.04;
  const Outcome outcome = processorOutcome(report, package(0, {0, 1}), 42);
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "Tested 2 of 2 threads");
  EXPECT_EQ(outcome.text,
            "Tested 2 of 2 threads of Fast CPU, 13 operations, 0 errors\n"
            "CPUs 0-1: 400 to 410 runs each in 7.0 s\n"
            "4000 messages exchanged between CPUs\n"
            "Seed 42\n");
}

TEST(ProcessorReportText, AFailedRunNamesCpuAndOperation) {
  ProcessorReport report;
  report.tested = {0, 1};
  report.operations = 1;
  report.errors = 3;
  report.faults = {{{1}, "Prime sieve", {7, 8}}, {{0, 1}, "Message exchange", {1, 2}}};
  const Outcome outcome = processorOutcome(report, package(0, {0, 1}), 42);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].text,
            "CPU 1, Prime sieve: expected 0x0000000000000007, got 0x0000000000000008\n"
            "CPU 0-1, Message exchange: expected 0x0000000000000001, got 0x0000000000000002\n"
            "and 1 further error\n");
  ASSERT_EQ(outcome.errors.size(), 2U);
  EXPECT_EQ(outcome.errors[1].code, "Processor error: CPU 1 Prime sieve");
}

TEST(ProcessorReportText, ACpuThatWasNotTestedLeavesTheRunIncomplete) {
  ProcessorReport report;
  report.tested = {0};
  report.unusable = {1};
  const Outcome outcome = processorOutcome(report, package(0, {0, 1}), 42);
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_NE(outcome.text.find("CPUs 1 could not be used\n"), std::string::npos);
}

TEST(ProcessorReportText, ACpuThatWasNotTestedDoesNotHideAnError) {
  ProcessorReport report;
  report.tested = {0};
  report.unusable = {1};
  report.errors = 1;
  report.faults = {{{0}, "Prime sieve", {7, 8}}};
  const Outcome outcome = processorOutcome(report, package(0, {0, 1}), 42);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_EQ(outcome.errors.at(0).count, 1U);
  EXPECT_EQ(outcome.text.find("further"), std::string::npos);
}

TEST(ProcessorReportText, WithoutAnyCpuTestedTheRunIsIncomplete) {
  EXPECT_EQ(processorOutcome({}, package(0, {0}), 42).state, CompletionState::Incomplete);
}

TEST(ProcessorReportText, ARunTellsWhatItMeasured) {
  ProcessorReport report;
  report.tested = {0, 1};
  report.operations = 20;
  report.fewestRuns = 300;
  report.mostRuns = 320;
  report.messages = 4000;
  report.seconds = 2;
  const ResultText text = resultText(processorOutcome(report, package(0, {0, 1}), 42).measured);
  EXPECT_EQ(text.format,
            "|real64 Duration|string DurationUnits|uint64 TestedThreads|uint64 Operations"
            "|uint64 Runs|real64 RunRate|string RunRateUnits|uint64 Messages|uint64 Errors"
            "|real64 ErrorsMaximum");
  EXPECT_EQ(text.data, "|2.000|s|2|20|300|150.000|1/s|4000|0|0.000");
}

TEST(ProcessorReportText, AStoppedRunSaysSo) {
  ProcessorReport report;
  report.tested = {0};
  report.stopped = true;
  EXPECT_EQ(processorOutcome(report, package(0, {0}), 42).state, CompletionState::Stopped);
}

std::optional<Mismatch> echo(std::uint64_t seed, ResultTap& tap) {
  return compare(seed, tap.pass(seed));
}

class WrongTap : public ResultTap {
 public:
  std::uint64_t pass(std::uint64_t result) override { return ~result; }
};

class ProcessorDiagnosticTest : public ::testing::Test {
 protected:
  ProcessorDiagnosticTest()
      : diagnostic([this] { return packages; },
                   {[](unsigned) { return true; }, [] { return 0.0; }, {{"Echo", echo}}, &tap},
                   [] { return 99U; }, 0) {}

  Outcome run(std::size_t index = 0) {
    const Device device = diagnostic.devices()[index];
    return diagnostic.run(device, settings, control);
  }

  std::vector<CpuPackage> packages{package(0, {0, 1}), package(2, {3})};
  ResultTap tap;
  FakeControl control;
  RunSettings settings;
  ProcessorDiagnostic diagnostic;
};

TEST_F(ProcessorDiagnosticTest, EachPackageIsADevice) {
  const auto devices = diagnostic.devices();
  ASSERT_EQ(devices.size(), 2U);
  EXPECT_EQ(devices[1].id, "cpu2");
  EXPECT_EQ(devices[1].name, "Fast CPU");
  EXPECT_EQ(asNumber(devices[0].properties.get("NumberOfEnabledThreads")), 2U);
  EXPECT_EQ(asNumber(devices[0].properties.get("MaxClockSpeed")), 2300U);
}

TEST_F(ProcessorDiagnosticTest, ARunTestsTheThreadsOfItsDevice) {
  const Outcome outcome = run(1);
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.text.find("Tested 1 of 2 threads of Fast CPU, 1 operation, 0 errors\nCPUs 3:"),
            0U)
      << outcome.text;
  EXPECT_NE(outcome.text.find("Seed 99\n"), std::string::npos);
}

TEST_F(ProcessorDiagnosticTest, ADefectFailsTheRun) {
  WrongTap wrong;
  ProcessorDiagnostic defective(
      [this] { return packages; },
      {[](unsigned) { return true; }, [] { return 0.0; }, {{"Echo", echo}}, &wrong},
      [] { return 99U; }, 0);
  EXPECT_EQ(defective.run(defective.devices()[0], settings, control).state,
            CompletionState::Failed);
}

TEST_F(ProcessorDiagnosticTest, ASeedCanBeSet) {
  settings.properties = {{"Seed", std::uint32_t{7}, false}};
  EXPECT_NE(run().text.find("Seed 7\n"), std::string::npos);
}

TEST_F(ProcessorDiagnosticTest, APackageWithoutUsableThreadsIsNotTested) {
  packages[0].cpus.clear();
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.text, "Not tested: none of the processor's threads may be used\n");
}

TEST_F(ProcessorDiagnosticTest, APackageThatHasGoneIsNotTested) {
  const Device device = diagnostic.devices()[0];
  packages.clear();
  const Outcome outcome = diagnostic.run(device, settings, control);
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.summary, "Not tested: the processor is gone");
  EXPECT_EQ(outcome.text, "Not tested: the processor is gone\n");
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::ServiceErrors);
  EXPECT_EQ(outcome.notes[0].text, outcome.text);
}

TEST_F(ProcessorDiagnosticTest, VoltagesAndClockRatesCannotBeSet) {
  settings.properties = {{"CPUSpeeds", std::string("3000"), false}};
  EXPECT_EQ(diagnostic.refuse(settings), "CPUSpeeds is not supported");
  settings.properties = {{"CoreVoltages", std::uint32_t{9}, false}};
  EXPECT_EQ(diagnostic.refuse(settings), "CoreVoltages is not supported");
}

TEST_F(ProcessorDiagnosticTest, ASeedThatIsNoNumberIsRefused) {
  settings.properties = {{"Seed", std::int64_t{-9}, false}};
  EXPECT_EQ(diagnostic.refuse(settings), "Seed is no number");
  settings.properties = {{"Seed", std::int64_t{9}, false}};
  EXPECT_EQ(diagnostic.refuse(settings), "");
  settings.properties = {{"Seed", {}, false}, {"CPUSpeeds", {}, false}};
  EXPECT_EQ(diagnostic.refuse(settings), "");
}

TEST_F(ProcessorDiagnosticTest, EveryPropertyOfItsDeviceIsKnown) {
  EXPECT_EQ(show(diagnostic.devices()[0].properties),
            "Role=\"Central Processor\"\nCPUStatus=uint16 1\nAddressWidth=uint16 64\n"
            "NumberOfEnabledCores=uint16 1\nNumberOfEnabledThreads=uint16 2\n"
            "ThreadNumbers=[uint16 0, uint16 1]\nMaxClockSpeed=uint32 2300\n");
  packages[0].megahertz = 0;
  EXPECT_TRUE(isNull(diagnostic.devices()[0].properties.get("MaxClockSpeed")));
}

TEST_F(ProcessorDiagnosticTest, EverythingThatDescribesItIsKnown) {
  const DiagnosticDescription& known = diagnostic.description();
  EXPECT_EQ(known.family, "DIAGS_Processor");
  EXPECT_EQ(known.name, "DIAGS: Processor Test");
  EXPECT_EQ(known.elementName, "Processor Test");
  EXPECT_EQ(known.text,
            "Lets every thread of a processor calculate and compares the results with known ones.");
  EXPECT_EQ(known.estimatedSeconds, 1U);
  EXPECT_EQ(
      show(known.testProperties),
      "CPUTestType=uint16 1\nOtherCPUTestTypeDescription=\"Integer, floating-point and vector "
      "operations, caches, message exchange\"\nCharacteristics=[]\nTestTypes=[uint16 2, uint16 "
      "3]\n");
  EXPECT_EQ(show(known.capabilities),
            "SupportedServiceModes=[uint16 2, uint16 3, uint16 4, uint16 5]\n"
            "SupportedLoopControl=[uint16 2, uint16 3, uint16 4, uint16 5]\n"
            "SupportedLogOptions=[uint16 2, uint16 7, uint16 8]\n"
            "SupportedLogStorage=[uint16 32768]\nSupportedExecutionControls=[uint16 3, uint16 5]\n"
            "Seed=true\n");
  EXPECT_EQ(show(known.defaultSettings),
            "HaltOnError=false\nQuickMode=false\nPercentOfTestCoverage=uint8 100\n"
            "Seed=null\nNonDestructive=true\n");
}

TEST_F(ProcessorDiagnosticTest, ItsNameCanStandInALine) {
  EXPECT_EQ(diagnostic.description().name.find_first_of(",|\n"), std::string::npos);
}

}  // namespace
}  // namespace providers
