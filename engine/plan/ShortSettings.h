#pragma once

#include <string>
#include <vector>

#include "engine/Offer.h"
#include "engine/plan/Plan.h"

namespace engine {

/// The declaration of that name, whatever the case of its letters; null where there is none.
const SettingDeclaration* findSetting(const OfferedTest& test, const std::string& name);

/// The names by which people call some properties of the standard's settings classes: `loops` and
/// `seconds` (LoopControl with LoopControlParameter), `size` (NumberOfBytes), `coverage`
/// (PercentOfTestCoverage). Only those that the test's settings have.
std::vector<std::string> shortSettings(const OfferedTest& test);

/// Whether the name, in whatever case, is one of them.
bool hasShortSetting(const OfferedTest& test, const std::string& name);

/// The texts with every short name written out. `loops` and `seconds` in one list hold both: what
/// is over first ends the run. Where a property has the short name itself, the property is meant.
/// Throws `PlanError` for a value that is none.
std::vector<SettingText> writtenOut(const OfferedTest& test, const std::vector<SettingText>& texts);

}  // namespace engine
