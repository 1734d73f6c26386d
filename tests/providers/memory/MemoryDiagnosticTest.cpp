#include <gtest/gtest.h>

#include "providers/memory/MemoryDiagnostic.h"
#include "tests/providers/common/FakeControl.h"

namespace providers {
namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1024} * 1024;

struct SizeRow {
  const char* name;
  std::uint64_t available;  ///< in MiB
  std::uint64_t wanted;     ///< in bytes
  unsigned percent;
  std::uint64_t chosen;  ///< in MiB
};

class TestSizes : public ::testing::TestWithParam<SizeRow> {};

TEST_P(TestSizes, LeaveRoomForOthers) {
  const SizeRow& row = GetParam();
  const MemorySize size{9999 * kMebi, 9999 * kMebi, row.available * kMebi};
  EXPECT_EQ(chooseTestSize(size, row.wanted, row.percent), row.chosen * kMebi);
}

INSTANTIATE_TEST_SUITE_P(Table, TestSizes,
                         ::testing::Values(SizeRow{"Default", 8000, 0, 100, 256},
                                           SizeRow{"FourthOfWhatIsAvailable", 100, 0, 100, 25},
                                           SizeRow{"Wanted", 8000, 64 * kMebi, 100, 64},
                                           SizeRow{"MoreThanDefault", 8000, 512 * kMebi, 100, 512},
                                           SizeRow{"MoreThanThereIs", 100, 512 * kMebi, 100, 25},
                                           SizeRow{"HalfTheCoverage", 8000, 0, 50, 128},
                                           SizeRow{"WholeMebibytes", 8000, 5 * kMebi + 7, 100, 5},
                                           SizeRow{"TooLittle", 3, 0, 100, 0}),
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
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(settler.bytes(), kMebi);
  EXPECT_EQ(outcome.text.find("Tested 1 MiB of 32 MiB (3.1 %), 5 patterns, 0 errors\n"), 0U)
      << outcome.text;
  EXPECT_NE(outcome.text.find("seed 99"), std::string::npos);
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
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::ServiceErrors);
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

TEST_F(MemoryDiagnosticTest, SettingsOfAnotherTypeAreRefused) {
  settings.properties = {{"Seed", std::string("lucky"), false}};
  EXPECT_EQ(diagnostic.refuse(settings), "Seed is no number");
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
