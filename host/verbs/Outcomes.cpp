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

std::uint64_t countOf(const engine::RunSummary& summary) {
  return passed(summary) + countOf(summary, Outcome::kFailed) + undecided(summary);
}

std::string summaryOf(const engine::RunSummary& summary) {
  const std::uint64_t all = countOf(summary);
  const std::uint64_t skipped = countOf(summary, Outcome::kSkipped);
  std::string text = std::to_string(all) + (all == 1 ? " test: " : " tests: ") +
                     std::to_string(passed(summary)) + " passed, " +
                     std::to_string(countOf(summary, Outcome::kFailed)) + " failed, " +
                     std::to_string(undecided(summary)) + " without a verdict";
  if (skipped > 0) text += ", " + std::to_string(skipped) + " skipped";
  return text;
}

}  // namespace host
