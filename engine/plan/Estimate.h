#pragma once

#include "engine/Offer.h"
#include "engine/plan/SettingValues.h"

namespace engine {

/// How many seconds a run with these settings will take; 0 where nobody knows. The service's
/// estimate is for its default settings, taken for one loop: a number of loops (Loops, or
/// LoopControl 3) takes as often as long, a time (Seconds, or LoopControl 4) so long and until the
/// last loop has ended; where several are set, what is over first. Loops of 1 asks for nothing.
/// Twice the usual PercentOfTestCoverage takes twice as long; where there is no usual one, as long.
double expectedSeconds(const OfferedTest& test, const SettingValues& settings);

/// How many seconds pass until such a run has its verdict: the runner looks at the job every five
/// seconds only, and once more when it has seen its end. 0 where nobody knows.
double secondsToVerdict(double expected);

}  // namespace engine
