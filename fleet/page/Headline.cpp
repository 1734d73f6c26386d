#include "fleet/page/Headline.h"

#include <algorithm>
#include <set>
#include <utility>

#include "fleet/page/Words.h"

namespace fleet::page {
namespace {

struct Counts {
  std::uint64_t machines = 0;  ///< with those that did not answer
  std::uint64_t of[kVerdicts] = {};

  std::uint64_t operator[](Verdict verdict) const { return of[static_cast<std::size_t>(verdict)]; }
};

bool isNowhere(const Silent& silent) { return silent.machine == kNowhere; }

Counts countsOf(const Answer& answer) {
  Counts counts;
  for (const Machine& machine : answer.machines) {
    ++counts.of[static_cast<std::size_t>(machine.verdict)];
  }
  const auto nowhere = static_cast<std::uint64_t>(
      std::count_if(answer.silent.begin(), answer.silent.end(), isNowhere));
  counts.of[static_cast<std::size_t>(Verdict::kNone)] += nowhere;
  counts.machines = answer.machines.size() + nowhere;
  return counts;
}

/// "1 of 10,000 machines", "All 10,000 machines", "The machine".
std::string share(std::uint64_t count, std::uint64_t all) {
  if (all == 1) return "The machine";
  if (count == all) return "All " + counted(all, "machine");
  return thousands(count) + " of " + counted(all, "machine");
}

/// The worst that there is comes first.
Headline verdictOf(const Counts& counts) {
  const std::uint64_t open = counts[Verdict::kUnfinished] + counts[Verdict::kNone];
  if (counts[Verdict::kFailed] > 0) {
    return {"fail", share(counts[Verdict::kFailed], counts.machines) + " failed", ""};
  }
  if (counts.machines == 0) return {"open", "No machine answered", ""};
  if (open > 0) return {"open", share(open, counts.machines) + " gave no verdict", ""};
  if (counts[Verdict::kWarned] > 0) {
    return {"warn", share(counts[Verdict::kWarned], counts.machines) + " passed with a warning",
            ""};
  }
  if (counts[Verdict::kPassed] == 0) return {"open", "Nothing was tested", ""};
  return {"pass", share(counts[Verdict::kPassed], counts.machines) + " passed", ""};
}

/// In machines: a slow part may stand out in each of its tests.
std::string slowSentence(const Answer& answer) {
  std::set<std::uint32_t> machines;
  for (const Slow& slow : answer.slow) machines.insert(slow.machine);
  if (machines.empty()) return {};
  return counted(machines.size(), "machine") + (machines.size() == 1 ? " has" : " have") +
         " parts that are far from their peers. ";
}

std::string silentSentence(const Answer& answer) {
  if (answer.silent.empty()) return {};
  return counted(answer.silent.size(), "machine") + " did not answer, or not to the end. ";
}

std::string leftOutSentence(const Answer& answer) {
  if (answer.totals.leftOut == 0) return {};
  const bool isOne = answer.totals.leftOut == 1;
  return counted(answer.totals.leftOut, "stream") + (isOne ? " was" : " were") + " left out. ";
}

std::string fleetsSentence(const Answer& answer) {
  if (answer.components.size() < 2) return {};
  return "These are " + thousands(answer.components.size()) +
         " fleets, which have no test in common. ";
}

}  // namespace

Headline headlineOf(const Answer& answer) {
  Headline headline = verdictOf(countsOf(answer));
  headline.lead = slowSentence(answer) + silentSentence(answer) + leftOutSentence(answer) +
                  fleetsSentence(answer);
  // What needs a look is no proof that all is well.
  if (headline.style == "pass" && !headline.lead.empty()) headline.style = "warn";
  return headline;
}

}  // namespace fleet::page
