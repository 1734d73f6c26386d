#include <gtest/gtest.h>

#include <cerrno>
#include <new>
#include <system_error>

#include "providers/memory/services/PatternDiagnostic.h"
#include "tests/engine/identity/FirmwareTable.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/memory/engine/FaultyKernels.h"
#include "tests/providers/memory/size/MappedMemory.h"

namespace providers::memory {
namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;
constexpr std::size_t kVictim = 5000;
constexpr std::uint64_t kBit63 = std::uint64_t{1} << 63;

/// A machine with 100 MiB of memory, one module of it, and one processor.
class DiagnosticTest : public ::testing::Test {
 protected:
  DiagnosticTest() {
    settings.properties.set("NumberOfBytes", kMebi);
    settings.properties.set("Seed", std::uint32_t{77});
    here.size = [this] { return size; };
    here.allocate = [this](std::size_t bytes) {
      if (bytes > most) throw std::bad_alloc();
      auto buffer = std::make_unique<MemoryBuffer>(bytes);
      words = buffer->words();
      return buffer;
    };
    here.takeTurn = [this](const MemorySize&) {
      ++turns;
      return isBusy ? nullptr : std::make_unique<Turn>(turnsTaken);
    };
    here.processors = [] { return std::vector<Processor>{0}; };
    here.clock = [this] { return now += 0.5; };
    here.seed = [] { return 1; };
    here.kernels = &faultyKernels(model);
    here.physical = [this](const void* address) {
      const auto offset = static_cast<const char*>(address) - reinterpret_cast<const char*>(words);
      return PhysicalPlace{0x40000000 + static_cast<std::uint64_t>(offset), {}};
    };
    here.firmware = [] {
      engine::FirmwareTable table;
      table.add(17, 0x28, {{0x10, "DIMM_A2"}, {0x18, "S1"}},
                {{2, 2, 1}, {4, 2, 9}, {0x0C, 2, 4096}});
      table.add(19, 0x1F, {}, {{8, 4, 4 * 1024 * 1024 - 1}, {0x0C, 2, 9}});
      return std::string(table.bytes());
    };
    here.counters = [this] { return counters; };
  }

  /// Counts itself.
  struct Turn : MemoryTurn {
    explicit Turn(int& count) : taken(count) { ++taken; }
    ~Turn() override { --taken; }
    int& taken;
  };

  Outcome run(TestType type = TestType::MovingInversionsRandom) {
    here.resting = std::make_shared<FaultyResting>(model, nullptr);
    for (const TestKind& kind : testKinds())
      if (kind.type == type) return PatternDiagnostic(kind, here).run({}, settings, control);
    return {};
  }
  /// A bit that cannot be zero, of a word of the memory whichever part of it is looked at.
  void stick() {
    model.written = [this](std::uint64_t* w, std::size_t line, const std::uint64_t*) {
      if (w + line * kLineWords == words + kVictim) words[kVictim] |= kBit63;
    };
  }
  static void expectText(const Outcome& outcome, const std::string& part) {
    EXPECT_NE(outcome.text.find(part), std::string::npos) << part << " is not in:\n"
                                                          << outcome.text;
  }

  MemorySize size{100 * kMebi, 100 * kMebi, 50 * kMebi};
  std::size_t most = 1000 * kMebi;
  Surroundings here;
  FaultModel model;
  std::vector<ErrorCounter> counters;
  RunSettings settings;
  FakeControl control;
  std::uint64_t* words = nullptr;
  double now = 0;
  bool isBusy = false;
  int turns = 0;  ///< that were asked for
  int turnsTaken = 0;
};

TEST_F(DiagnosticTest, GoodMemoryPassesEachTestWithWhatWasDone) {
  for (const TestKind& kind : testKinds()) {
    const Outcome outcome = run(kind.type);
    EXPECT_EQ(outcome.state, CompletionState::Ok) << kind.name << '\n' << outcome.text;
    EXPECT_EQ(outcome.summary, "Tested 1 MiB of 100 MiB (1.0 %)");
    expectText(outcome, "0 errors\n");
    expectText(outcome, "seed 77\n");
    expectText(outcome, "on 1 processor (faulty): ");
    expectText(outcome, "ocked in place");
  }
}

// Catches a verdict that is written into the very page that was found to be broken.
TEST_F(DiagnosticTest, ABrokenPageIsNotGivenBackToTheProcess) {
  stick();
  run();
  EXPECT_TRUE(isMapped(words + kVictim));
  EXPECT_FALSE(isMapped(words + kVictim + kMebi / 16));
}

TEST_F(DiagnosticTest, AFaultThatComesBackIsHardAndNamesWhatToReplace) {
  stick();
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  expectText(outcome, "failing bits 63\n  at physical address 0x40009c40, ");
  expectText(outcome, "Memory module DIMM_A2 (serial S1)\n");
  expectText(outcome, "Tested alone 8 times: failed 8 times, a hard fault, failing bits 63\n");
  expectText(outcome, "Corrective action: Replace memory module DIMM_A2 (serial S1)\n");
  ASSERT_EQ(outcome.errors.size(), 1U);
  EXPECT_EQ(outcome.errors[0].code, "Memory error");
  ASSERT_EQ(outcome.notes.size(), 1U);
  const Note& note = outcome.notes.front();
  EXPECT_EQ(note.correctiveAction, "Replace memory module DIMM_A2 (serial S1)\n");
  EXPECT_EQ(note.part.name, "Memory module");
  EXPECT_EQ(note.part.location, "DIMM_A2");
  EXPECT_EQ(note.part.serialNumber, "S1");
}

TEST_F(DiagnosticTest, AFlipThatDoesNotComeBackIsSoftAndNamesWhatToWatch) {
  bool once = true;
  model.settled = [&](std::uint64_t*) {
    if (std::exchange(once, false)) words[kVictim] ^= 1;
  };
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  expectText(outcome, "Tested alone 8 times: no error came back, a soft error\n");
  expectText(outcome, "Corrective action: Run the test again and watch memory module DIMM_A2");
}

TEST_F(DiagnosticTest, ABitThatFadesComesBackWhenItsPageRestsAlone) {
  model.rested = [this](std::uint64_t*, double) { words[kVictim] &= ~kBit63; };
  const Outcome outcome = run(TestType::BitFade);
  expectText(outcome, "Tested alone 2 times: failed 2 times, a hard fault, failing bits 63\n");
}

TEST_F(DiagnosticTest, PagesThatAreRightAlonePointToTheirAddresses) {
  bool once = true;
  model.settled = [&](std::uint64_t*) {
    if (!std::exchange(once, false)) return;
    words[kVictim] ^= 1;
    words[kVictim + 4096] ^= 1;
  };
  expectText(run(), "addresses lead to wrong cells");
}

TEST_F(DiagnosticTest, AnUnknownPlaceIsToldWithTheReason) {
  stick();
  here.physical = [](const void*) { return PhysicalPlace{{}, "nobody may know"}; };
  const Outcome outcome = run();
  expectText(outcome, "physical address not known: nobody may know, ");
  expectText(outcome, "Memory module not known: the physical address is not known\n");
  expectText(outcome, "test the modules one at a time");
}

TEST_F(DiagnosticTest, AModuleThatTheFirmwareDoesNotTellIsUnknown) {
  stick();
  here.firmware = [] { return std::string(); };
  expectText(run(), "Memory module not known: the firmware's table (SMBIOS) cannot be read\n");
  here.firmware = [] { return std::string(engine::FirmwareTable().system().bytes()); };
  expectText(run(), "Memory module not known: the firmware's table (SMBIOS) maps no module");
}

TEST_F(DiagnosticTest, WhatTheControllerCountsMeanwhileIsTold) {
  counters = {{"mc0/dimm3", "DIMM_A2", 5, 0}};
  model.settled = [this](std::uint64_t*) { counters[0].corrected = 7; };
  expectText(run(), "Counted meanwhile by the memory controller: DIMM_A2, 2 corrected errors, 0 ");
}

// Catches a controller's word that is told, and of which nothing follows.
TEST_F(DiagnosticTest, WhereNoAddressLeadsToAModuleTheOneThatWasCountedIsNamed) {
  stick();
  here.firmware = [] { return std::string(); };
  counters = {{"mc0/dimm3", "DIMM_B1", 5, 0}, {"mc0/dimm4", "DIMM_B2", 5, 0}};
  model.settled = [this](std::uint64_t*) { counters[0].corrected = 7; };
  Outcome outcome = run();
  expectText(outcome, "Replace memory module DIMM_B1, whose errors its controller counted\n");
  EXPECT_EQ(outcome.notes.at(0).part.name, "Memory module mc0/dimm3");
  EXPECT_EQ(outcome.notes.at(0).part.location, "DIMM_B1");
  model.settled = [this](std::uint64_t*) { counters[0].corrected = ++counters[1].corrected; };
  outcome = run();
  expectText(outcome, "where that is not known, test the modules one at a time\n");
  EXPECT_EQ(outcome.notes.at(0).part.location, "");
}

TEST_F(DiagnosticTest, AFlipOfWhichNobodyKnowsTheModuleSaysWhatToDoIfItComesBack) {
  bool once = true;
  model.settled = [&](std::uint64_t*) {
    if (std::exchange(once, false)) words[kVictim] ^= 1;
  };
  here.firmware = [] { return std::string(); };
  expectText(run(), "if errors come back, replace the memory module that has these addresses\n");
}

TEST_F(DiagnosticTest, LessThanWasAskedForIsIncompleteWithTheFigures) {
  settings.properties.set("NumberOfBytes", 80 * kMebi);
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.summary, "Tested 45 MiB of 100 MiB (45.0 %), cut short: low memory");
  expectText(outcome, "45 MiB instead of 80 MiB, with 50 MiB available\n");
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::ServiceErrors);
}

// Catches two commands that each take what the other one counts as free.
TEST_F(DiagnosticTest, ALargePartIsNotTestedBesideAnother) {
  settings.properties.set("NumberOfBytes", 40 * kMebi);
  isBusy = true;
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.summary, "Not tested: another memory test is under way");
  expectText(outcome, "What to do: wait until it has ended, and test again\n");
  EXPECT_EQ(words, nullptr) << "no memory is taken";
}

TEST_F(DiagnosticTest, ASmallPartIsTestedWhoeverTestsALargeOne) {
  isBusy = true;
  EXPECT_EQ(run().state, CompletionState::Ok);
  EXPECT_EQ(turns, 0);
}

TEST_F(DiagnosticTest, ATurnLastsAsLongAsTheRun) {
  settings.properties.set("NumberOfBytes", 40 * kMebi);
  int turnsAtTheEnd = 0;
  here.counters = [&] {
    turnsAtTheEnd = turnsTaken;
    return counters;
  };
  EXPECT_EQ(run().state, CompletionState::Ok);
  EXPECT_EQ(turnsAtTheEnd, 1);
  EXPECT_EQ(turnsTaken, 0);
}

TEST_F(DiagnosticTest, MemoryThatCannotBeHadIsAskedForByHalves) {
  settings.properties.set("NumberOfBytes", 8 * kMebi);
  most = 3 * kMebi;
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.summary, "Tested 2 MiB of 100 MiB (2.0 %), cut short: low memory");
}

TEST_F(DiagnosticTest, MemoryThatOthersTakeMeanwhileIsLeftToThem) {
  settings.properties.set("NumberOfBytes", 40 * kMebi);
  int questions = 0;
  here.size = [&] { return ++questions > 2 ? MemorySize{100 * kMebi, 100 * kMebi, kMebi} : size; };
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.summary.rfind("Tested 1 MiB of 100 MiB", 0), 0U) << outcome.summary;
  expectText(outcome, "1 MiB instead of 40 MiB");
}

TEST_F(DiagnosticTest, WithoutAnyMemoryNothingIsTested) {
  size.available = kMebi / 2;
  Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.summary, "Not tested: only 0 MiB of 100 MiB memory available");
  size.available = 50 * kMebi;
  most = 0;
  outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
}

// Catches errors that are lost where the system starts no thread to test their pages alone.
TEST_F(DiagnosticTest, NoThreadIsStartedOnceTheMemoryIsTested) {
  stick();
  int started = 0;
  here.start = [&started](std::function<void()> life) {
    if (started++ == 1) throw std::system_error(EAGAIN, std::generic_category());
    return std::thread(std::move(life));
  };
  const Outcome outcome = run();
  EXPECT_EQ(started, 1);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  expectText(outcome, "Tested alone 8 times: failed 8 times");
}

TEST_F(DiagnosticTest, FewerThreadsThanProcessorsAreToldWithTheReason) {
  settings.properties.set("NumberOfBytes", 2 * kMebi);
  here.processors = [] { return std::vector<Processor>{0, 0}; };
  int started = 0;
  here.start = [&started](std::function<void()> life) {
    if (started++ == 1) throw std::system_error(EAGAIN, std::generic_category());
    return std::thread(std::move(life));
  };
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "Tested 2 MiB of 100 MiB (2.0 %)");
  expectText(outcome, " on 1 processor (faulty): ");
  expectText(outcome, "On 2 processors it was to be: the system started no more threads\n");
}

TEST_F(DiagnosticTest, TheCachesThatCountAreThoseOfTheProcessorsThatTest) {
  std::vector<Processor> asked;
  here.processors = [] { return std::vector<Processor>{0, 1, 2, 3}; };
  settings.properties.set("NumberOfBytes", 2 * kMebi);
  here.cacheBytes = [&asked](const std::vector<Processor>& processors) {
    asked = processors;
    return std::size_t{0};
  };
  run();
  EXPECT_EQ(asked, (std::vector<Processor>{0, 2}))
      << "two mebibytes are for two threads, far apart";
}

TEST_F(DiagnosticTest, ARequestEndsTheRun) {
  control.stopAfter(2);
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  EXPECT_EQ(outcome.summary, "Began to test 1 MiB of 100 MiB");
}

// Catches a run that goes on to take a large memory for minutes, and one that takes none and says
// that there was none.
TEST_F(DiagnosticTest, ARequestEndsTheTakingOfMemory) {
  settings.properties.set("NumberOfBytes", 40 * kMebi);
  for (const int questions : {0, 1, 5}) {
    FakeControl asked;
    asked.stopAfter(questions);
    int sizes = 0;
    here.size = [&] { return ++sizes, size; };
    const Outcome outcome = PatternDiagnostic(testKinds().front(), here).run({}, settings, asked);
    EXPECT_EQ(outcome.state, CompletionState::Stopped) << questions;
    EXPECT_EQ(outcome.summary, "Stopped before memory was tested");
    expectText(outcome, "Stopped before 40 MiB of ");
    ASSERT_EQ(outcome.measured.size(), 3U) << "no memory and no bandwidth was measured";
    EXPECT_EQ(outcome.measured[2].name, "Errors");
    EXPECT_LE(sizes, questions + 1);
  }
}

// Catches a test that finds a fault and then exceeds its time limit while pages rest alone.
TEST_F(DiagnosticTest, LongRestsAreNotRepeatedForEachPage) {
  settings.properties.set("WaitSeconds", std::uint32_t{300});
  double rested = 0;
  model.rested = [&](std::uint64_t*, double seconds) {
    words[kVictim] &= ~kBit63;
    words[kVictim + 4096] &= ~kBit63;
    rested += seconds;
  };
  const Outcome outcome = run(TestType::BitFade);
  expectText(outcome, "Tested alone 1 time: failed 1 time, a hard fault, failing bits 63\n");
  expectText(outcome, "Not tested alone, since its content would rest for too long\n");
  EXPECT_NEAR(rested, 4 * 300, 1);
}

TEST_F(DiagnosticTest, TheDefaultIsATwentiethAndQuickAFifthOfIt) {
  settings.properties = {};
  size = {10000 * kMebi, 10000 * kMebi, 200 * kMebi};  // 180 of them can be tested
  EXPECT_EQ(run().summary, "Tested 9 MiB of 9.8 GiB (0.1 %)");
  settings.quick = true;
  EXPECT_EQ(run().summary, "Tested 1 MiB of 9.8 GiB (0.0 %)");
}

TEST_F(DiagnosticTest, TheEstimateFollowsTheSize) {
  const PatternDiagnostic diagnostic(testKinds().front(), here);
  const double little = diagnostic.passSeconds(settings);
  settings.properties.set("NumberOfBytes", 40 * kMebi);
  EXPECT_GT(diagnostic.passSeconds(settings), little);
  EXPECT_LT(little, 1.1);
}

TEST_F(DiagnosticTest, SettingsThatAreNoNumbersAreRefusedByName) {
  const PatternDiagnostic diagnostic(testKinds().front(), here);
  EXPECT_EQ(diagnostic.refuse(settings), "");
  for (const char* name : {"NumberOfBytes", "Seed", "WaitSeconds"}) {
    RunSettings bad;
    bad.properties.set(name, std::string("much"));
    EXPECT_EQ(diagnostic.refuse(bad), std::string(name) + " is no number");
  }
}

// Catches two runs that take each other's memory and both end short of it.
TEST_F(DiagnosticTest, NoOtherTestOfMemoryRunsBesideIt) {
  for (const TestKind& kind : testKinds())
    EXPECT_EQ(PatternDiagnostic(kind, here).description().exclusive, Exclusive::Family);
}

TEST_F(DiagnosticTest, MeasurementsAreBandwidthSweepsAndErrors) {
  std::string names;
  for (const Measured& one : run().measured) names += one.name + " ";
  EXPECT_EQ(names, "Duration TestedMemory Bandwidth Sweeps Errors ");
}

}  // namespace
}  // namespace providers::memory
