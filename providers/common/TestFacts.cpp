#include "providers/common/TestFacts.h"

namespace providers {

namespace {

using Uint16s = std::vector<std::uint16_t>;

/// The values of SupportedServiceModes for the settings that the test honours.
Uint16s serviceModes(const Properties& settings) {
  constexpr std::uint16_t kCoverage = 2, kQuick = 3, kHaltOnError = 4, kPersistence = 5,
                          kNonDestructive = 7;
  const auto has = [&settings](const char* name) { return !isNull(settings.get(name)); };
  Uint16s modes;
  if (has("PercentOfTestCoverage")) modes.push_back(kCoverage);
  if (has("QuickMode")) modes.push_back(kQuick);
  if (has("HaltOnError")) modes.push_back(kHaltOnError);
  // Every test's records are kept as long as somebody wants, and none of them destroys anything.
  modes.insert(modes.end(), {kPersistence, kNonDestructive});
  return modes;
}

}  // namespace

DiagnosticDescription describeTest(const TestFacts& test) {
  DiagnosticDescription description;
  description.family = test.family;
  description.name = test.name;
  description.elementName = test.elementName;
  description.text = test.text;
  description.testProperties = {{"Characteristics", test.characteristics, false},
                                {"TestTypes", test.testTypes, false}};
  description.testProperties.merge(test.type);
  description.capabilities = {{"SupportedServiceModes", serviceModes(test.settings), false},
                              {"SupportedLoopControl", Uint16s{2, 3, 4, 5}, false},
                              {"SupportedLogOptions", Uint16s{2, 5, 7, 8}, false},
                              {"SupportedLogStorage", Uint16s{0x8000}, false},
                              {"SupportedExecutionControls", Uint16s{3, 5}, false}};
  description.capabilities.merge(test.capabilities);
  description.defaultSettings = {{"NonDestructive", true, false}};
  description.defaultSettings.merge(test.settings);
  description.settingsClass = test.settingsClass;
  description.estimatedSeconds = test.seconds;
  description.secondsBetweenPasses = test.looks ? 1 : 0;
  return description;
}

DiagnosticDescription describeTest(const FamilyFacts& family, const FamilyTest& test) {
  TestFacts facts;
  facts.family = family.family;
  facts.name = family.namePrefix + test.name;
  facts.elementName = family.elementName + test.name + " Test";
  facts.text = test.text;
  facts.type = {{family.typeProperty, test.type, false}};
  facts.characteristics = test.characteristics;
  facts.testTypes = test.testTypes;
  facts.settings = test.settings;
  facts.settingsClass = test.settingsClass.empty() ? family.settingsClass : test.settingsClass;
  facts.capabilities = test.capabilities;
  facts.seconds = test.seconds;
  facts.looks = test.looks;
  return describeTest(facts);
}

}  // namespace providers
