#include <gtest/gtest.h>

#include "providers/common/QuickCheck.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/FakeDiagnostic.h"

namespace providers {
namespace {

class QuickCheckTest : public ::testing::Test {
 protected:
  std::unique_ptr<Diagnostic> wrapped() {
    auto made = std::make_unique<FakeDiagnostic>();
    fan = made.get();
    fan->describe().defaultSettings = {{"QuickMode", false, false}, {"Seed", {}, false}};
    return made;
  }

  FakeDiagnostic* fan = nullptr;
  QuickCheck check{wrapped(), {"DIAGS: Fan Check", "Fan Check"}};
};

TEST_F(QuickCheckTest, IsTheSameTestUnderAnotherNameAndQuickByDefault) {
  const DiagnosticDescription& description = check.description();
  EXPECT_EQ(description.name, "DIAGS: Fan Check");
  EXPECT_EQ(description.elementName, "Fan Check");
  EXPECT_EQ(description.text, "A quick check: Fan Test in its quick way.");
  EXPECT_EQ(description.family, "DIAGS_Fan");
  EXPECT_EQ(asBoolean(description.defaultSettings.get("QuickMode")), true);
  EXPECT_EQ(description.defaultSettings.all().size(), 2U);
}

TEST_F(QuickCheckTest, RunsWhatItStandsForWithTheSettingsOfTheRun) {
  fan->script({failureWith(3)});
  RunSettings settings;
  settings.coveragePercent = 40;
  FakeControl control;
  EXPECT_EQ(check.run(check.devices().at(0), settings, control).state, CompletionState::Failed);
  EXPECT_EQ(fan->lastSettings().coveragePercent, 40U);
  EXPECT_EQ(check.passSeconds(settings), 8);
  fan->refuseWith("the fan is too hot");
  EXPECT_EQ(check.refuse(settings), "the fan is too hot");
}

}  // namespace
}  // namespace providers
