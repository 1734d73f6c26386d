#include <gtest/gtest.h>

#include "providers/memory/MemoryDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/ShowValue.h"

namespace providers {
namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1024} * 1024;

struct SizeRow {
  const char* name;
  std::uint64_t available;  ///< in MiB
  std::uint64_t wanted;     ///< in bytes
  unsigned percent;
  std::uint64_t asked;   ///< in MiB
  std::uint64_t chosen;  ///< in MiB
};

class TestSizes : public ::testing::TestWithParam<SizeRow> {};

TEST_P(TestSizes, LeaveRoomForOthers) {
  const SizeRow& row = GetParam();
  const MemorySize size{9999 * kMebi, 9999 * kMebi, row.available * kMebi};
  const std::uint64_t asked = askedTestSize(row.wanted, row.percent);
  EXPECT_EQ(asked, row.asked * kMebi);
  EXPECT_EQ(chooseTestSize(size, asked), row.chosen * kMebi);
}

constexpr std::uint64_t kHuge = ~std::uint64_t{0};

INSTANTIATE_TEST_SUITE_P(
    Table, TestSizes,
    ::testing::Values(SizeRow{"Default", 8000, 0, 100, 256, 256},
                      SizeRow{"FourthOfWhatIsAvailable", 100, 0, 100, 256, 25},
                      SizeRow{"Wanted", 8000, 64 * kMebi, 100, 64, 64},
                      SizeRow{"MoreThanDefault", 8000, 512 * kMebi, 100, 512, 512},
                      SizeRow{"MoreThanThereIs", 100, 512 * kMebi, 100, 512, 25},
                      SizeRow{"HalfTheCoverage", 8000, 0, 50, 128, 128},
                      SizeRow{"OnePercent", 8000, 400 * kMebi, 1, 4, 4},
                      SizeRow{"WholeMebibytes", 8000, 5 * kMebi + 7, 100, 5, 5},
                      SizeRow{"WholeMebibytesOfWhatIsAvailable", 23, 0, 100, 256, 5},
                      SizeRow{"OneMebibyteAtLeast", 8000, 1000, 100, 1, 1},
                      SizeRow{"OneMebibyteAtLeastOfAPart", 8000, kMebi, 50, 1, 1},
                      SizeRow{"AsMuchAsCanBeSaid", 8000, kHuge, 100, kHuge / kMebi, 2000},
                      SizeRow{"JustEnough", 4, 0, 100, 256, 1},
                      SizeRow{"TooLittle", 3, 0, 100, 256, 0}),
    [](const auto& row) { return std::string(row.param.name); });

class FlippingSettler : public MemorySettler {
 public:
  void settle(std::uint64_t* words, std::size_t count) override {
    m_bytes = count * sizeof *words;
    if (m_flip) words[count / 2] ^= std::uint64_t{1} << 9;
  }
  void flip() { m_flip = true; }
  std::size_t bytes() const { return m_bytes; }

 private:
  bool m_flip = false;
  std::size_t m_bytes = 0;
};

class MemoryDiagnosticTest : public ::testing::Test {
 protected:
  MemoryDiagnosticTest() : diagnostic(surroundings()) {}

  MemorySurroundings surroundings() {
    MemorySurroundings result;
    result.size = [this] { return size; };
    result.clock = [this] { return now += 1; };
    result.settler = &settler;
    result.seed = [] { return 99U; };
    result.targetSeconds = 5;
    return result;
  }
  Outcome run() { return diagnostic.run(diagnostic.devices()[0], settings, control); }

  MemorySize size{64 * kMebi, 32 * kMebi, 4 * kMebi};
  double now = 0;
  FlippingSettler settler;
  FakeControl control;
  RunSettings settings;
  MemoryDiagnostic diagnostic;
};

TEST_F(MemoryDiagnosticTest, OneDeviceStandsForTheMemoryOfTheMachine) {
  const auto devices = diagnostic.devices();
  ASSERT_EQ(devices.size(), 1U);
  EXPECT_EQ(devices[0].id, "mem0");
  EXPECT_EQ(devices[0].name, "System Memory");
  EXPECT_EQ(asNumber(devices[0].properties.get("NumberOfBlocks")), 64 * kMebi);
  EXPECT_EQ(asNumber(devices[0].properties.get("ConsumableBlocks")), 32 * kMebi);
}

TEST_F(MemoryDiagnosticTest, ARunTestsItsShareAndPasses) {
  settings.properties = {{"NumberOfBytes", kMebi, false}};
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(settler.bytes(), kMebi);
  EXPECT_EQ(outcome.summary, "Tested 1 MiB of 32 MiB (3.1 %)");
  EXPECT_EQ(outcome.text.find("Tested 1 MiB of 32 MiB (3.1 %), 5 patterns, 0 errors\nWalking"), 0U)
      << outcome.text;
  EXPECT_NE(outcome.text.find("seed 99"), std::string::npos);
}

TEST_F(MemoryDiagnosticTest, ARunOnLessThanWasAskedForSaysSo) {
  size.available = 8 * kMebi;
  settings.coveragePercent = 2;
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "Tested 2 MiB of 32 MiB (6.2 %), cut short: low memory");
  EXPECT_NE(outcome.text.find("errors\nCut short by lack of memory: 2 MiB instead of 5 MiB, with "
                              "8 MiB available\n"),
            std::string::npos)
      << outcome.text;
}

TEST_F(MemoryDiagnosticTest, WhatTheSystemRefusesIsTriedWithLess) {
  size.available = 64 * kMebi;
  std::vector<std::size_t> tried;
  MemorySurroundings stingy = surroundings();
  stingy.allocate = [&tried](std::size_t bytes) {
    tried.push_back(bytes / kMebi);
    if (bytes > 3 * kMebi) throw std::bad_alloc();
    return std::make_unique<MemoryBuffer>(bytes);
  };
  MemoryDiagnostic less(stingy);
  settings.properties = {{"NumberOfBytes", 13 * kMebi, false}};
  const Outcome outcome = less.run(less.devices()[0], settings, control);
  EXPECT_EQ(tried, (std::vector<std::size_t>{13, 6, 3}));
  EXPECT_EQ(outcome.summary, "Tested 3 MiB of 32 MiB (9.4 %), cut short: low memory");
}

TEST_F(MemoryDiagnosticTest, WithoutAnyMemoryFromTheSystemNothingIsTested) {
  size.available = 64 * kMebi;
  MemorySurroundings empty = surroundings();
  unsigned tries = 0;
  empty.allocate = [&tries](std::size_t) -> std::unique_ptr<MemoryBuffer> {
    ++tries;
    throw std::bad_alloc();
  };
  MemoryDiagnostic none(empty);
  const Outcome outcome = none.run(none.devices()[0], settings, control);
  EXPECT_EQ(tries, 5U) << "16, 8, 4, 2 and 1 MiB";
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.text, "Not tested: not even 1 MiB can be had, with 64 MiB available\n");
}

TEST_F(MemoryDiagnosticTest, ADefectFailsTheRun) {
  settler.flip();
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_NE(outcome.text.find("wrong bits 9\n"), std::string::npos) << outcome.text;
}

TEST_F(MemoryDiagnosticTest, TooLittleMemoryIsNoVerdictOnTheMemory) {
  size.available = kMebi;
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.text, "Not tested: only 1 MiB of 32 MiB memory are available\n");
  EXPECT_EQ(outcome.summary, "Not tested: only 1 MiB of 32 MiB memory are available");
  ASSERT_EQ(outcome.errors.size(), 1U);
  EXPECT_EQ(outcome.errors[0].code, "Not enough memory");
  EXPECT_EQ(outcome.errors[0].count, 1U);
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::ServiceErrors);
  EXPECT_EQ(outcome.notes[0].text, outcome.text);
  EXPECT_EQ(outcome.notes[0].errors.size(), 1U);
}

TEST_F(MemoryDiagnosticTest, SizeAndSeedCanBeSet) {
  size.available = 64 * kMebi;
  settings.properties = {{"NumberOfBytes", 2 * kMebi, false}, {"Seed", std::uint32_t{7}, false}};
  EXPECT_NE(run().text.find("seed 7"), std::string::npos);
  EXPECT_EQ(settler.bytes(), 2 * kMebi);
}

TEST_F(MemoryDiagnosticTest, QuickModeTakesFewerRounds) {
  MemorySurroundings longer = surroundings();
  longer.targetSeconds = 50;
  MemoryDiagnostic thorough(longer);
  const Device memory = thorough.devices()[0];
  EXPECT_NE(thorough.run(memory, settings, control).text.find("\n10 rounds"), std::string::npos);
  settings.quick = true;
  EXPECT_NE(thorough.run(memory, settings, control).text.find("\n2 rounds"), std::string::npos);
}

TEST_F(MemoryDiagnosticTest, AnErrorEndsTheRunWhereThatIsWanted) {
  settler.flip();
  settings.haltOnError = true;
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_EQ(outcome.summary, "Began to test 1 MiB of 32 MiB, cut short: low memory");
  EXPECT_NE(outcome.text.find("\n0 rounds"), std::string::npos) << outcome.text;
}

TEST_F(MemoryDiagnosticTest, EveryPropertyOfItsDeviceIsKnown) {
  EXPECT_EQ(show(diagnostic.devices()[0].properties),
            "BlockSize=uint64 1\nNumberOfBlocks=uint64 67108864\n"
            "ConsumableBlocks=uint64 33554432\nAccess=uint16 3\nVolatile=true\n"
            "Primordial=true\n");
}

TEST_F(MemoryDiagnosticTest, EverythingThatDescribesItIsKnown) {
  const DiagnosticDescription& known = diagnostic.description();
  EXPECT_EQ(known.family, "DIAGS_Memory");
  EXPECT_EQ(known.name, "DIAGS: Memory Test");
  EXPECT_EQ(known.elementName, "Memory Test");
  EXPECT_EQ(known.text,
            "Writes patterns to a share of the available memory and checks that it keeps them.");
  EXPECT_EQ(known.estimatedSeconds, 6U);
  EXPECT_EQ(show(known.testProperties),
            "MemoryTestType=uint16 1\nOtherMemoryTestTypeDescription=\"Walking bits, self "
            "addressing, moving inversions, checkerboard, "
            "random\"\nCharacteristics=[]\nTestTypes=[uint16 2]\n");
  EXPECT_EQ(show(known.capabilities),
            "SupportedServiceModes=[uint16 2, uint16 3, uint16 4, uint16 5]\n"
            "SupportedLoopControl=[uint16 2, uint16 3, uint16 4, uint16 5]\n"
            "SupportedLogOptions=[uint16 2, uint16 7, uint16 8]\n"
            "SupportedLogStorage=[uint16 32768]\nSupportedExecutionControls=[uint16 3, uint16 5]\n"
            "Seed=true\n");
  EXPECT_EQ(show(known.defaultSettings),
            "HaltOnError=false\nQuickMode=false\nPercentOfTestCoverage=uint8 100\n"
            "NumberOfBytes=uint64 268435456\nSeed=null\nNonDestructive=true\n");
}

TEST_F(MemoryDiagnosticTest, APassTakesItsTargetAndALittleMore) {
  EXPECT_EQ(diagnostic.passSeconds(settings), 6);
  settings.loop.seconds = 60;
  EXPECT_EQ(diagnostic.passSeconds(settings), 6);
  settings.loop.seconds = 2;
  EXPECT_EQ(diagnostic.passSeconds(settings), 3) << "no pass is to outlast the run";
  settings.quick = true;
  EXPECT_EQ(diagnostic.passSeconds(settings), 2);
}

TEST_F(MemoryDiagnosticTest, SettingsOfAnotherTypeAreRefused) {
  settings.properties = {{"Seed", std::string("lucky"), false}};
  EXPECT_EQ(diagnostic.refuse(settings), "Seed is no number");
  settings.properties = {{"NumberOfBytes", std::int64_t{-9}, false}};
  EXPECT_EQ(diagnostic.refuse(settings), "NumberOfBytes is no number");
  settings.properties = {{"NumberOfBytes", std::int64_t{9}, false}, {"Seed", {}, false}};
  EXPECT_EQ(diagnostic.refuse(settings), "");
  settings.properties = {};
  EXPECT_EQ(diagnostic.refuse(settings), "");
}

TEST_F(MemoryDiagnosticTest, NamesCanStandInALine) {
  for (const std::string& name :
       {diagnostic.description().name, diagnostic.devices()[0].id, diagnostic.devices()[0].name})
    EXPECT_EQ(name.find_first_of(",|\n"), std::string::npos) << name;
}

}  // namespace
}  // namespace providers
