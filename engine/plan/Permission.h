#pragma once

#include <string>

#include "engine/Offer.h"
#include "engine/plan/Plan.h"

namespace engine {

/// Why the plan does not let the test run: "it may destroy data, and allow-destructive is not set".
/// Empty where it does.
std::string whyNotAllowed(const Plan& plan, const Characteristics& test);

}  // namespace engine
