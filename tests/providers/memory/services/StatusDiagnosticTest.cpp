#include <gtest/gtest.h>

#include "providers/memory/services/StatusDiagnostic.h"
#include "tests/engine/identity/FirmwareTable.h"
#include "tests/providers/common/FakeControl.h"

namespace providers::memory {
namespace {

class StatusTest : public ::testing::Test {
 protected:
  StatusTest() {
    here.size = [] { return MemorySize{}; };
    here.hasFirmware = [this] { return !firmware.empty(); };
    here.firmware = [this] { return firmware; };
    here.counters = [this] { return counters; };
  }
  Outcome run() { return StatusDiagnostic(here).run({}, {}, control); }
  void addModule() {
    engine::FirmwareTable table;
    table.add(17, 0x28, {{0x10, "DIMM_A2"}, {0x17, "Rams"}}, {{2, 2, 1}, {0x0C, 2, 4096}});
    firmware = table.bytes();
  }

  Surroundings here;
  std::string firmware;
  std::vector<ErrorCounter> counters;
  FakeControl control;
};

TEST_F(StatusTest, IsNotOfferedWhereThereIsNobodyToAsk) {
  EXPECT_TRUE(StatusDiagnostic(here).devices().empty());
  counters = {{"mc0/dimm0", "", 0, 0}};
  EXPECT_EQ(StatusDiagnostic(here).devices().size(), 1U);
}

// Catches a type that clients show as "Other", or as another test.
TEST_F(StatusTest, HasTheTypeThatTheModelHasForIt) {
  EXPECT_EQ(StatusDiagnostic(here).description().testProperties.get("MemoryTestType"),
            Value(std::uint16_t{13}));
}

// Catches a promise of coverage, a quick way or an end at the first error: it has no such setting.
TEST_F(StatusTest, PromisesNoModeThatItHasNoSettingFor) {
  EXPECT_TRUE(
      sameValue(StatusDiagnostic(here).description().capabilities.get("SupportedServiceModes"),
                Value(std::vector<std::uint16_t>{5, 7})));
}

TEST_F(StatusTest, ModulesWithoutErrorsAreAllRight) {
  addModule();
  counters = {{"mc0/dimm0", "DIMM_A2", 0, 0}};
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.text, "1 module, 0 errors counted\nMemory module DIMM_A2: 4.0 GiB, Rams\n");
}

TEST_F(StatusTest, ModulesWhoseErrorsNobodyCountsAreToldAsSuch) {
  addModule();
  EXPECT_EQ(run().summary, "1 module, errors not counted");
}

TEST_F(StatusTest, CorrectedErrorsAreAWarning) {
  counters = {{"mc0/dimm0", "DIMM_A2", 3, 0}, {"mc0/dimm1", "", 0, 0}};
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_NE(outcome.text.find("Corrective action: Watch memory module DIMM_A2"), std::string::npos);
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::Warnings);
  EXPECT_EQ(outcome.notes[0].correctiveAction,
            "Watch memory module DIMM_A2; replace it if the count goes on rising\n");
  EXPECT_EQ(outcome.notes[0].part.name, "Memory module mc0/dimm0");
  EXPECT_EQ(outcome.notes[0].part.location, "DIMM_A2");
}

TEST_F(StatusTest, UncorrectedErrorsAreAFailureWhateverElseWasCounted) {
  counters = {{"mc0/dimm0", "DIMM_A2", 3, 1}, {"mc0/dimm1", "DIMM_B2", 3, 0}};
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_NE(outcome.text.find("Corrective action: Replace memory module DIMM_A2\n"),
            std::string::npos);
  EXPECT_EQ(outcome.notes.at(0).correctiveAction, "Replace memory module DIMM_A2\n");
  EXPECT_EQ(outcome.notes.at(0).type, RecordType::DeviceErrors);
  EXPECT_EQ(outcome.errors.size(), 2U);
}

TEST_F(StatusTest, WithoutAnAnswerItIsIncomplete) {
  firmware = "locked";
  const Outcome outcome = run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.errors.size(), 1U);
}

}  // namespace
}  // namespace providers::memory
