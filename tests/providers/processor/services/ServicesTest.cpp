#include <gtest/gtest.h>

#include <set>

#include "providers/processor/services/ExchangeDiagnostic.h"
#include "providers/processor/services/ProcessorDevices.h"
#include "providers/processor/services/StatusDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/processor/FaultyProcessor.h"

namespace providers {
namespace {

struct NameRow {
  const char* model;
  const char* shown;
};

TEST(DisplayName, HasNothingThatSeparatesIdentifiers) {
  for (const NameRow& row : {NameRow{"Fast CPU", "Fast CPU"}, NameRow{"A,B|C", "A B C"},
                             NameRow{"  Fast\t CPU , ", "Fast CPU"}, NameRow{"", "Processor"},
                             NameRow{" ,| ", "Processor"}, NameRow{"X\x01Y\x7F", "X Y"}})
    EXPECT_EQ(displayName(row.model), row.shown);
}

CpuPackage packageOf(unsigned number, std::vector<unsigned> cpus) {
  CpuPackage package;
  package.number = number;
  package.model = "Fast CPU";
  package.cores = 1;
  package.megahertz = 2300;
  package.online = cpus;
  package.coreIds.assign(cpus.size(), 0);
  package.cpus = std::move(cpus);
  return package;
}

/// Eight threads in two packages, of which the second one may be faulty.
class ProcessorServicesTest : public ::testing::Test {
 protected:
  ProcessorServicesTest() {
    packages = {packageOf(0, {0, 1, 2, 3}), packageOf(1, {4})};
    machine.devices = [this] {
      std::vector<Device> devices;
      for (const CpuPackage& package : packages) devices.push_back(makeDevice(package));
      return devices;
    };
    machine.packages = [this] { return packages; };
    machine.caches = [](unsigned) { return std::vector<CpuCache>{{1, 4096, 1}, {2, 16384, 2}}; };
    machine.kernels = [this] {
      ++kernelLoads;
      return Kernels{{}, {"zstd: not there"}, {}};
    };
    machine.seed = [] { return std::uint64_t{99}; };
    machine.surroundings = {FaultyProcessor::binder(), [this] { return 0.01 * looks++; },
                            [] { return 0.0; }, &faulty};
  }

  Device device(unsigned number = 0) { return machine.devices().at(number); }
  Outcome run(const char* name) {
    for (const CalculationService& service : calculationServices())
      if (std::string(service.name) == name)
        return CalculationDiagnostic(service, machine).run(device(), settings, control);
    throw std::invalid_argument(name);
  }
  Outcome exchange(unsigned number = 0) {
    return ExchangeDiagnostic(machine, tap).run(device(number), settings, control);
  }

  std::vector<CpuPackage> packages;
  std::atomic<int> looks{0};
  int kernelLoads = 0;
  FaultyProcessor faulty;
  MessageTap tap;
  ProcessorMachine machine;
  RunSettings settings;
  FakeControl control;
};

struct ServiceRow {
  const char* name;
  std::uint16_t type;
};

TEST_F(ProcessorServicesTest, HaveTheStandardsNamesAndTypes) {
  const std::vector<ServiceRow> rows{{"DIAGS: Processor Instruction", 3},
                                     {"DIAGS: Processor FPU Instruction", 4},
                                     {"DIAGS: Processor Mixed Instruction Width", 5},
                                     {"DIAGS: Processor Cache", 14},
                                     {"DIAGS: Processor Stress", 13}};
  ASSERT_EQ(calculationServices().size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const CalculationDiagnostic diagnostic(calculationServices()[i], machine);
    const DiagnosticDescription& description = diagnostic.description();
    EXPECT_EQ(description.name, rows[i].name);
    EXPECT_EQ(description.family, "DIAGS_Processor");
    EXPECT_EQ(asNumber(description.testProperties.get("CPUTestType")), rows[i].type);
    EXPECT_EQ(asNumber(description.defaultSettings.get("PercentOfTestCoverage")), 100U);
    const bool isStress = rows[i].type == 13;
    EXPECT_EQ(description.testProperties.get("TestTypes"),
              Value(std::vector<std::uint16_t>{static_cast<std::uint16_t>(isStress ? 3 : 2)}));
  }
  EXPECT_EQ(ExchangeDiagnostic(machine, tap).description().name, "DIAGS: Processor IPC");
  const StatusDiagnostic status(machine, [](const std::vector<unsigned>&) { return Health(); });
  EXPECT_EQ(status.description().name, "DIAGS: Processor Status");
  EXPECT_EQ(asNumber(status.description().testProperties.get("CPUTestType")), 9U);
}

// Catches modes without a setting, settings without a mode, and a status without its controls.
TEST_F(ProcessorServicesTest, PromiseTheModesThatTheyHaveSettingsFor) {
  using Uint16s = std::vector<std::uint16_t>;
  const StatusDiagnostic status(machine, {});
  const ExchangeDiagnostic exchange(machine, tap);
  const auto promised = [](const Diagnostic& one, const char* name) {
    return one.description().capabilities.get(name);
  };
  EXPECT_TRUE(sameValue(promised(status, "SupportedServiceModes"), Value(Uint16s{5, 7})));
  EXPECT_TRUE(sameValue(promised(exchange, "SupportedServiceModes"), Value(Uint16s{3, 4, 5, 7})));
  EXPECT_TRUE(sameValue(promised(status, "SupportedExecutionControls"), Value(Uint16s{3, 5})));
}

TEST_F(ProcessorServicesTest, ADeviceTellsOfItsPackage) {
  const Device first = device();
  EXPECT_EQ(first.id, "cpu0");
  EXPECT_EQ(first.name, "Fast CPU");
  EXPECT_EQ(asNumber(first.properties.get("NumberOfEnabledThreads")), 4U);
  EXPECT_EQ(asNumber(first.properties.get("NumberOfEnabledCores")), 1U);
  EXPECT_EQ(asNumber(first.properties.get("MaxClockSpeed")), 2300U);
  packages[1].megahertz = 0;
  EXPECT_TRUE(isNull(device(1).properties.get("MaxClockSpeed")));
}

TEST_F(ProcessorServicesTest, AGoodProcessorPassesEachTest) {
  settings.coveragePercent = 10;
  settings.quick = true;
  for (const CalculationService& service : calculationServices()) {
    const Outcome outcome = run(service.name);
    EXPECT_EQ(outcome.state, CompletionState::Ok) << service.name << "\n" << outcome.text;
    EXPECT_EQ(outcome.summary, "Tested 4 of 4 threads");
    EXPECT_NE(outcome.text.find("Seed 99\n"), std::string::npos);
  }
}

TEST_F(ProcessorServicesTest, LibrariesAreLoadedForStressAlone) {
  settings.coveragePercent = 1;
  settings.quick = true;
  run("Processor FPU Instruction");
  EXPECT_EQ(kernelLoads, 0);
  EXPECT_NE(run("Processor Stress").text.find("Without zstd: not there\n"), std::string::npos);
  EXPECT_EQ(kernelLoads, 1);
}

TEST_F(ProcessorServicesTest, AFaultOfACacheIsNamed) {
  faulty.only = "Second-level cache";
  faulty.cpus = {1};
  settings.quick = true;
  const Outcome outcome = run("Processor Cache");
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_NE(outcome.text.find("CPU 1 (core 0 of processor 0): Second-level cache"),
            std::string::npos)
      << outcome.text;
}

TEST_F(ProcessorServicesTest, AFaultThatEndsTheRunIsTheOnlyOne) {
  faulty.cpus = {0, 1, 2, 3};
  settings.haltOnError = true;
  packages[0].cpus = {0};
  const Outcome outcome = run("Processor Mixed Instruction Width");
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_EQ(outcome.notes.size(), 1U);
}

TEST_F(ProcessorServicesTest, TheSeedCanBeGiven) {
  settings.coveragePercent = 1;
  settings.quick = true;
  settings.properties.set("Seed", std::uint32_t{5});
  EXPECT_NE(run("Processor Instruction").text.find("Seed 5\n"), std::string::npos);
}

TEST_F(ProcessorServicesTest, SettingsThatCannotBeHonouredAreRefused) {
  const CalculationDiagnostic diagnostic(calculationServices().front(), machine);
  EXPECT_EQ(diagnostic.refuse(settings), "");
  settings.properties.set("Seed", std::uint32_t{5});
  EXPECT_EQ(diagnostic.refuse(settings), "");
  settings.properties.set("Seed", std::string("x"));
  EXPECT_EQ(diagnostic.refuse(settings), "Seed is no number");
  settings.properties = {{"CPUSpeeds", std::vector<std::uint32_t>{5}, false}};
  EXPECT_EQ(diagnostic.refuse(settings), "CPUSpeeds is not supported");
}

TEST_F(ProcessorServicesTest, TheTimeIsThatOfTheSettings) {
  const CalculationDiagnostic diagnostic(calculationServices().back(), machine);
  EXPECT_DOUBLE_EQ(diagnostic.passSeconds(settings), 8);
  settings.loop.seconds = 3;
  EXPECT_DOUBLE_EQ(diagnostic.passSeconds(settings), 4);
  settings.quick = true;
  EXPECT_DOUBLE_EQ(diagnostic.passSeconds(settings), 2.4);
  const ExchangeDiagnostic messages(machine, tap);
  EXPECT_DOUBLE_EQ(messages.passSeconds(settings), 0.4);
  settings.quick = false;
  EXPECT_DOUBLE_EQ(messages.passSeconds(settings), 2);
}

TEST_F(ProcessorServicesTest, WhatIsGoneOrForbiddenIsNotTested) {
  packages[0].cpus.clear();
  EXPECT_EQ(run("Processor Cache").summary,
            "Not tested: none of the processor's threads may be used");
  EXPECT_EQ(exchange().summary, "Not tested: fewer than two threads may be used");
  const Device gone = device();
  packages.erase(packages.begin());
  const StatusDiagnostic::Reader read = [](const std::vector<unsigned>&) { return Health(); };
  for (const Outcome& outcome :
       {CalculationDiagnostic(calculationServices().front(), machine).run(gone, settings, control),
        ExchangeDiagnostic(machine, tap).run(gone, settings, control),
        StatusDiagnostic(machine, read).run(gone, settings, control)}) {
    EXPECT_EQ(outcome.state, CompletionState::Incomplete);
    EXPECT_EQ(outcome.summary, "Not tested: the processor is gone");
    EXPECT_EQ(outcome.notes.size(), 1U);
  }
}

TEST_F(ProcessorServicesTest, MessagesNeedTwoThreads) {
  const auto devices = ExchangeDiagnostic(machine, tap).devices();
  ASSERT_EQ(devices.size(), 1U);
  EXPECT_EQ(devices[0].id, "cpu0");
}

TEST_F(ProcessorServicesTest, MessagesAreExchangedByAllThreads) {
  settings.quick = true;
  const Outcome outcome = exchange();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_NE(outcome.text.find("6 pairs, 0 errors"), std::string::npos) << outcome.text;
}

// It would pass whatever state the processor is in.
TEST_F(ProcessorServicesTest, StatusOfWhatTheSystemDoesNotTellIsIncomplete) {
  Health health;
  health.threads.resize(2);
  StatusDiagnostic status(machine, [&health](const std::vector<unsigned>&) { return health; });
  EXPECT_EQ(status.run(device(), settings, control).state, CompletionState::Incomplete);
  health.threads[1].machineChecks = 0;
  EXPECT_EQ(status.run(device(), settings, control).state, CompletionState::Ok);
}

TEST_F(ProcessorServicesTest, StatusTellsWhatGivesCauseForConcern) {
  Health health;
  health.threads.resize(2);
  health.threads[0].microcode = "0x2b";
  const auto read = [&](const std::vector<unsigned>& cpus) {
    EXPECT_EQ(cpus, packages[0].online);
    return health;
  };
  StatusDiagnostic status(machine, read);
  Outcome outcome = status.run(device(), settings, control);
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "Read 4 threads, 0 concerns");
  ASSERT_EQ(outcome.measured.size(), 2U) << "nobody counted machine checks";
  EXPECT_EQ(outcome.measured[1].name, "ThreadsOff");
  health.hadMachineCheck = true;
  health.threads[1].machineChecks = 0;
  health.threads[0].coreThrottles = 3;
  health.threads[1].coreThrottles = 4;
  health.off = {9};
  health.isThreadingOff = true;
  outcome = status.run(device(), settings, control);
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_EQ(outcome.summary, "Read 4 threads, 1 concern");
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::Warnings);
  EXPECT_EQ(outcome.notes[0].correctiveAction, "Look for it in the system's log\n");
  EXPECT_EQ(outcome.measured.at(0).value, 2);
  EXPECT_EQ(outcome.measured.at(1).name, "MachineChecks");
  EXPECT_EQ(outcome.measured.at(2).value, 7);
  EXPECT_EQ(outcome.measured.at(3).value, 1);
}

TEST(ChooseShare, IsSpreadEvenlyAndNeverEmpty) {
  const Operations ten(10);
  EXPECT_EQ(chooseShare(ten, 100).size(), 10U);
  EXPECT_EQ(chooseShare(ten, 50).size(), 6U);
  EXPECT_EQ(chooseShare(ten, 1).size(), 1U);
}

// Catches efficient cores that are tested with what fills the caches of the fast ones alone.
TEST_F(ProcessorServicesTest, EachKindOfCoreIsTestedWithWhatFillsItsOwnCaches) {
  settings.quick = true;
  machine.caches = [](unsigned) { return std::vector<CpuCache>{{1, 4096, 1}}; };
  EXPECT_EQ(run("Processor Cache").measured.at(2).value, 1) << "operations";
  machine.caches = [](unsigned cpu) {
    return std::vector<CpuCache>{{1, cpu < 2 ? 4096U : 8192U, 1}};
  };
  EXPECT_EQ(run("Processor Cache").measured.at(2).value, 2);
  packages[0].cpus = {0, 1};
  EXPECT_EQ(run("Processor Cache").measured.at(2).value, 1) << "those that are not tested";
}

TEST(CacheOperations, OfTheSameSizeAreOne) {
  const Operations operations = cacheOperations(
      {{2, 1 << 20, 1}, {1, 49152, 2}, {1, 32768, 1}, {1, 24576, 1}, {2, 1 << 20, 1}});
  ASSERT_EQ(operations.size(), 3U);
  EXPECT_EQ(operations[0].items, 24576U / 128);
  EXPECT_EQ(operations[1].items, 32768U / 128);
  EXPECT_STREQ(operations[2].name, "Second-level cache");
}

TEST(CacheOperations, AreSizedAsTheCachesAre) {
  const Operations operations = cacheOperations(
      {{1, 32768, 2}, {2, 1 << 20, 1}, {3, std::uint64_t{1} << 30, 8}, {4, 4096, 1}});
  ASSERT_EQ(operations.size(), 4U);
  EXPECT_EQ(operations[0].items, 128U) << "half of it, in operands and results of 64 bytes";
  EXPECT_EQ(operations[1].items, 8192U);
  EXPECT_EQ(operations[2].items, 131072U) << "no more than 16 MiB for each thread";
  EXPECT_STREQ(operations[3].name, "Fourth-level cache");
  EXPECT_EQ(cacheOperations({}).size(), 3U);
}

}  // namespace
}  // namespace providers
