#pragma once

#include <string>
#include <utility>
#include <vector>

#include "engine/Offer.h"
#include "engine/plan/Plan.h"

namespace engine {

/// "1 to 100", "1 or more"; empty where the class wants no range.
std::string rangeOf(const SettingDeclaration& setting);

/// Properties of a test's settings by their declared names, each with the text of its value
/// (`canonicalText`).
using SettingValues = std::vector<std::pair<std::string, std::string>>;

/// Whether the test's settings have such a property, whatever the case of its letters; or what a
/// short name stands for: `loops`, `seconds`, `size`, `coverage`.
bool hasSetting(const OfferedTest& test, const std::string& name);

/// What `texts` mean for the test: its properties in the order in which they are declared, each
/// once. Of the texts about one property the last counts. Those that the test does not have are
/// passed over. A value that the type does not take, or out of its range, is refused: `PlanError`
/// that names place, setting and test.
SettingValues settingValues(const OfferedTest& test, const std::vector<SettingText>& texts);

/// `values` where they are about the same property in place of those in `below`.
SettingValues overlaid(const SettingValues& below, const SettingValues& values);

/// Throws `PlanError` for the first text that none of the tests has, with the names close to it.
/// Asks nothing where there are no tests.
void refuseUnknownSettings(const std::vector<const OfferedTest*>& tests,
                           const std::vector<SettingText>& texts);

/// NAME=VALUE in its two parts. Throws `PlanError` where there is no "=" or no name.
SettingText settingTextFrom(const std::string& text);

}  // namespace engine
