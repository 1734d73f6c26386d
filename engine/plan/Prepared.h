#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/Offer.h"
#include "engine/plan/Plan.h"
#include "engine/plan/SettingValues.h"

namespace engine {

/// The least that a test is given where nobody sets a limit.
constexpr Duration kLeastTimeLimit = std::chrono::minutes(5);

/// Three times what it will take, and no less than that.
Duration defaultTimeLimit(double expectedSeconds);

/// A test of a plan with all that its runs need.
struct PreparedTest {
  std::size_t test = 0;  ///< its place in the offer
  std::uint64_t repeat = 1;
  double estimate = 0;  ///< in seconds, with these settings; 0 where nobody knows
  Duration timeout = kLeastTimeLimit;
  SettingValues settings;
  std::vector<Limit> limits;
};

struct PreparedGroup {
  std::string name;
  std::vector<PreparedTest> tests;  ///< never empty
  std::uint64_t repeat = 1;
  std::optional<std::uint64_t> shuffle;
};

/// A test that the plan means and that does not run.
struct SkippedTest {
  std::size_t test = 0;
  std::string reason;
};

/// A plan on this machine: which tests run, and how.
struct PreparedPlan {
  std::vector<PreparedGroup> groups;  ///< without those that nothing is left of
  std::vector<SkippedTest> skipped;   ///< each test once, in the order of the plan
};

/// Finds the tests of the plan, leaves out what is excluded and not allowed, and works out
/// settings, limits and times. What may destroy data, disturbs the machine or asks the user for
/// something runs only where that is allowed: by its own name it is refused, by a device or a
/// pattern skipped. A test that a device or pattern names once more runs only once; named twice by
/// its own name, twice. Throws `PlanError` before anything has run, and `NothingToRun`
/// where nothing at all is left.
PreparedPlan prepare(const Plan& plan, const std::vector<OfferedTest>& offer);

}  // namespace engine
