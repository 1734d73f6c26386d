#pragma once

#include "engine/Offer.h"
#include "engine/plan/SettingValues.h"

namespace engine {

/// How many seconds a run with these settings will take; 0 where nobody knows. The service's
/// estimate is for one loop of its default settings: a number of loops (LoopControl 3) takes as
/// often as long, a time (LoopControl 4) so long and until the last loop has ended; where both are
/// set, what is over first.
double expectedSeconds(const OfferedTest& test, const SettingValues& settings);

}  // namespace engine
