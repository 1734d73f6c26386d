#include "host/verbs/Outcomes.h"

#include <cstdint>

namespace host {
namespace {

using engine::Outcome;

std::uint64_t countOf(const engine::RunSummary& summary, Outcome outcome) {
  const auto count = summary.outcomes.find(outcome);
  return count == summary.outcomes.end() ? 0 : count->second;
}

std::uint64_t passed(const engine::RunSummary& summary) {
  return countOf(summary, Outcome::kPassed) + countOf(summary, Outcome::kWarned);
}

std::uint64_t undecided(const engine::RunSummary& summary) {
  return countOf(summary, Outcome::kAborted) + countOf(summary, Outcome::kIncomplete) +
         countOf(summary, Outcome::kBroken);
}

}  // namespace

ExitStatus statusOf(const engine::RunSummary& summary, bool isComplete) {
  if (countOf(summary, Outcome::kFailed) > 0) return ExitStatus::kFailed;
  if (summary.wasCancelled) return ExitStatus::kInterrupted;
  if (undecided(summary) > 0 || !isComplete || summary.isTimeUp) return ExitStatus::kCouldNotRun;
  return passed(summary) > 0 ? ExitStatus::kPassed : ExitStatus::kNothingToRun;
}

}  // namespace host
