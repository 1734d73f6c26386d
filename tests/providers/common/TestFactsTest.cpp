#include <gtest/gtest.h>

#include "providers/common/TestFacts.h"
#include "tests/providers/common/ShowValue.h"

namespace providers {
namespace {

using Uint16s = std::vector<std::uint16_t>;

struct ModeRow {
  const char* what;
  Properties settings;
  Uint16s modes;
};

TEST(TestFacts, TheServiceModesAreThoseOfTheSettings) {
  for (const ModeRow& row :
       {ModeRow{"none", {}, {5, 7}},
        ModeRow{"one that has no mode", {{"LoadSeconds", std::uint32_t{5}, false}}, {5, 7}},
        ModeRow{"a quick way", {{"QuickMode", false, false}}, {3, 5, 7}},
        ModeRow{"all",
                {{"HaltOnError", false, false},
                 {"QuickMode", false, false},
                 {"PercentOfTestCoverage", std::uint8_t{100}, false}},
                {2, 3, 4, 5, 7}}}) {
    TestFacts facts;
    facts.settings = row.settings;
    EXPECT_TRUE(
        sameValue(describeTest(facts).capabilities.get("SupportedServiceModes"), Value(row.modes)))
        << row.what;
  }
}

TEST(TestFacts, AreAllInTheDescription) {
  TestFacts facts;
  facts.family = "DIAGS_Fan";
  facts.name = "DIAGS: Fan Balance";
  facts.elementName = "Fan Balance Test";
  facts.text = "Turns it.";
  facts.type = {{"FanTestType", std::uint16_t{7}, false}};
  facts.characteristics = {5};
  facts.testTypes = {2, 6};
  facts.settings = {{"Turns", std::uint32_t{9}, false}};
  facts.capabilities = {{"Seed", true, false}};
  facts.seconds = 11;
  const DiagnosticDescription description = describeTest(facts);
  EXPECT_EQ(description.family, "DIAGS_Fan");
  EXPECT_EQ(description.name, "DIAGS: Fan Balance");
  EXPECT_EQ(description.elementName, "Fan Balance Test");
  EXPECT_EQ(description.text, "Turns it.");
  EXPECT_EQ(asNumber(description.testProperties.get("FanTestType")), 7U);
  EXPECT_TRUE(sameValue(description.testProperties.get("Characteristics"), Value(Uint16s{5})));
  EXPECT_TRUE(sameValue(description.testProperties.get("TestTypes"), Value(Uint16s{2, 6})));
  EXPECT_EQ(asNumber(description.defaultSettings.get("Turns")), 9U);
  EXPECT_EQ(asBoolean(description.defaultSettings.get("NonDestructive")), true);
  EXPECT_EQ(asBoolean(description.capabilities.get("Seed")), true);
  EXPECT_FALSE(isNull(description.capabilities.get("SupportedLoopControl")));
  EXPECT_EQ(description.estimatedSeconds, 11U);
  EXPECT_EQ(description.secondsBetweenPasses, 0);
  facts.looks = true;
  EXPECT_EQ(describeTest(facts).secondsBetweenPasses, 1);
}

}  // namespace
}  // namespace providers
