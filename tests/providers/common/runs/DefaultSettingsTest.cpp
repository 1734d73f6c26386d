#include <gtest/gtest.h>

#include "providers/common/runs/DefaultSettings.h"
#include "providers/common/runs/Settings.h"
#include "tests/providers/common/FakeDiagnostic.h"

namespace providers {
namespace {

class DefaultSettingsTest : public ::testing::Test {
 protected:
  std::string refusal(const Properties& changed) {
    try {
      defaults.change(changed, nullptr);
    } catch (const BadSetting& error) {
      return error.what();
    }
    return {};
  }
  RunSettings read() const { return readRunSettings(defaults.get()); }

  static FakeDiagnostic described() {
    FakeDiagnostic fan;
    fan.describe().defaultSettings = {{"HaltOnError", false, false}, {"Seed", {}, false}};
    return fan;
  }

  FakeDiagnostic diagnostic = described();
  DefaultSettings defaults{diagnostic};
};

TEST_F(DefaultSettingsTest, AreThoseOfTheDiagnosticAndASinglePass) {
  EXPECT_FALSE(read().haltOnError);
  EXPECT_EQ(read().loop.count, 0U);
  EXPECT_EQ(read().loop.seconds, 0U);
}

TEST_F(DefaultSettingsTest, AChangeStaysUntilTheReset) {
  defaults.change({{"Loops", std::uint32_t{5}, false}, {"Seed", std::uint32_t{7}, false}}, nullptr);
  EXPECT_EQ(read().loop.count, 5U);
  EXPECT_EQ(asNumber(read().properties.get("Seed")), 7U);
  defaults.reset();
  EXPECT_EQ(read().loop.count, 0U);
  EXPECT_TRUE(isNull(defaults.get().get("Seed")));
}

TEST_F(DefaultSettingsTest, OnlyWhatIsNamedIsTakenOver) {
  const std::vector<std::string> names{"seed"};
  defaults.change({{"HaltOnError", true, false}, {"Seed", std::uint32_t{7}, false}}, &names);
  EXPECT_FALSE(read().haltOnError);
  EXPECT_EQ(asNumber(defaults.get().get("Seed")), 7U);
}

// A client gets the whole instance, changes one property and sends it all back.
TEST_F(DefaultSettingsTest, WhatStaysAsItIsMayComeAlong) {
  EXPECT_EQ(refusal({{"InstanceID", std::string("x"), true},
                     {"ElementName", std::string("y"), false},
                     {"LogOptions", {}, false},
                     {"HaltOnError", true, false}}),
            "");
  EXPECT_TRUE(read().haltOnError);
}

TEST_F(DefaultSettingsTest, WhatMakesNoSenseIsRefusedByNameAndChangesNothing) {
  const Properties before = defaults.get();
  struct Row {
    Property property;
    const char* reason;
  };
  for (const Row& row :
       {Row{{"Spin", std::uint32_t{3}, false}, "Spin is none of the test's settings"},
        Row{{"HaltOnError", std::string("yes"), false}, "HaltOnError is no boolean"},
        Row{{"Loops", std::string("many"), false}, "Loops is no number of 32 bits"},
        Row{{"Seconds", std::uint64_t{1} << 32, false}, "Seconds is no number of 32 bits"},
        Row{{"ResultPersistence", std::string("ever"), false}, "ResultPersistence is no number"}}) {
    EXPECT_EQ(refusal({{"Seed", std::uint32_t{9}, false}, row.property}), row.reason);
    EXPECT_TRUE(isNull(defaults.get().get("Seed"))) << row.property.name;
  }
}

TEST_F(DefaultSettingsTest, WhatTheDiagnosticRefusesIsRefusedInItsWords) {
  diagnostic.refuseWith("the fan has no such speed");
  EXPECT_EQ(refusal({{"Seed", std::uint32_t{9}, false}}), "the fan has no such speed");
}

TEST_F(DefaultSettingsTest, WhatARunIsGivenStandsInTheirPlace) {
  defaults.change({{"Seed", std::uint32_t{7}, false}, {"Loops", std::uint32_t{3}, false}}, nullptr);
  const Properties both = defaults.with({{"Seed", std::uint32_t{8}, false}, {"Loops", {}, false}});
  EXPECT_EQ(asNumber(both.get("Seed")), 8U);
  EXPECT_EQ(asNumber(both.get("Loops")), 3U);
}

TEST_F(DefaultSettingsTest, TheEstimateFollowsThem) {
  struct Row {
    const char* name;
    LoopControl loop;
    std::uint32_t seconds;
  };
  // A pass of the fan takes 8 seconds.
  for (const Row& row : {Row{"once", {}, 8}, Row{"three times", {false, 3, 0, false, 0}, 24},
                         Row{"for a minute", {false, 0, 60, false, 0}, 64},
                         Row{"three times within a minute", {false, 3, 60, false, 0}, 24},
                         Row{"nine times within a minute", {false, 9, 60, false, 0}, 64},
                         Row{"until somebody stops it", {true, 0, 0, false, 0}, 0},
                         Row{"until an error", {false, 0, 0, true, 1}, 0},
                         Row{"three times or until an error", {false, 3, 0, true, 1}, 24},
                         Row{"longer than can be told", {false, 4'000'000'000U, 0, false, 0}, 0}}) {
    RunSettings settings;
    settings.loop = row.loop;
    EXPECT_EQ(estimateSeconds(diagnostic, settings), row.seconds) << row.name;
  }
}

}  // namespace
}  // namespace providers
