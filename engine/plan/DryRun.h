#pragma once

#include <string>
#include <vector>

#include "engine/Offer.h"
#include "engine/plan/Plan.h"

namespace engine {

/// What the plan would run, for people: each run of one pass in the order of their numbers with its
/// settings, limits and times, what is skipped and why, and how long it takes by the estimates,
/// with as many tests at a time as the plan says. Lines, each with its end; what comes from outside
/// is made visible. Throws `PlanError` as a run would.
std::string dryRun(const Plan& plan, const std::vector<OfferedTest>& offer);

}  // namespace engine
