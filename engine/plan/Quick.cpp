#include "engine/plan/Quick.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "engine/plan/Estimate.h"

namespace engine {
namespace {

struct Candidate {
  double estimate;  ///< for all repetitions
  double seconds;   ///< the same to the verdicts, of which many are equal
  std::size_t group, test;
};

bool isShorter(const Candidate& one, const Candidate& other) {
  return one.estimate < other.estimate;
}

std::vector<Candidate> candidates(const PreparedPlan& plan) {
  std::vector<Candidate> all;
  for (std::size_t group = 0; group < plan.groups.size(); ++group) {
    const auto& tests = plan.groups[group].tests;
    for (std::size_t test = 0; test < tests.size(); ++test) {
      const double estimate = tests[test].estimate;
      const double times =
          static_cast<double>(tests[test].repeat) * static_cast<double>(plan.groups[group].repeat);
      if (estimate > 0) {
        all.push_back({estimate * times, secondsToVerdict(estimate) * times, group, test});
      }
    }
  }
  std::stable_sort(all.begin(), all.end(), isShorter);
  return all;
}

}  // namespace

void keepQuickest(PreparedPlan& plan, Duration bound) {
  double left = static_cast<double>(bound.count()) / 1'000;
  std::vector<std::vector<PreparedTest>> kept(plan.groups.size());
  for (const Candidate& candidate : candidates(plan)) {
    if (candidate.seconds > left) break;
    left -= candidate.seconds;
    kept[candidate.group].push_back(std::move(plan.groups[candidate.group].tests[candidate.test]));
  }
  for (std::size_t group = 0; group < kept.size(); ++group) {
    plan.groups[group].tests = std::move(kept[group]);
  }
}

}  // namespace engine
