#include "engine/plan/DryRun.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <utility>

#include "engine/plan/Estimate.h"
#include "engine/plan/Schedule.h"
#include "text/SafeText.h"

namespace engine {
namespace {

/// Nobody reads more, and no estimate needs more.
constexpr std::size_t kMostLines = 200, kMostRuns = 100'000;

std::string numberText(double number) {
  char buffer[64];
  return std::string(buffer, std::to_chars(buffer, std::end(buffer), number).ptr);
}

std::string counted(std::uint64_t count, const std::string& thing) {
  return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

std::string limitLine(const Limit& limit) {
  std::string line = "       " + text::visible(limit.measurement) + ':';
  if (limit.minimum) line += " at least " + numberText(*limit.minimum);
  if (limit.minimum && limit.maximum) line += ',';
  if (limit.maximum) line += " at most " + numberText(*limit.maximum);
  return line + '\n';
}

Duration durationOf(const PlannedRun& run) {
  return durationOfSeconds(secondsToVerdict(run.estimate));
}

std::string runLine(const PlannedRun& run) {
  const Duration estimate = durationOf(run);
  const std::string number = std::to_string(run.number);
  return std::string(number.size() < 4 ? 4 - number.size() : 0, ' ') + number + "  " +
         text::visible(run.test->identifier) + ": " +
         (estimate.count() > 0 ? "about " + textOf(estimate) : "no estimate") + ", at most " +
         textOf(run.timeout) + '\n';
}

/// One pass over the plan with the estimates for a clock.
class Simulation {
 public:
  Simulation(const Plan& plan, const std::vector<OfferedTest>& offer)
      : m_plan(plan), m_schedule(onePass(plan), offer) {}

  void run() {
    beginAll();
    while (!m_ends.empty() && m_runs.size() < kMostRuns) {
      const auto [end, number] = *m_ends.begin();
      m_ends.erase(m_ends.begin());
      m_now = end;
      m_schedule.ended(number, false);
      beginAll();
    }
    for (const auto& each : m_ends) m_now = std::max(m_now, each.first);
    std::sort(m_runs.begin(), m_runs.end(), [](const PlannedRun& one, const PlannedRun& other) {
      return one.number < other.number;
    });
  }

  std::string text() const {
    std::string text = m_plan.title.empty() ? "" : "Plan: " + text::visible(m_plan.title) + '\n';
    text += runLines();
    for (const SkippedTest& skipped : m_schedule.prepared().skipped) {
      text += "Skipped: " + text::visible(m_schedule.offer()[skipped.test].identifier) + ": " +
              skipped.reason + '\n';
    }
    return text + sumLine() + repetitionLine() + deadlineLine();
  }

 private:
  static Plan onePass(Plan plan) {
    plan.repeat = 1;
    plan.repeatFor.reset();
    plan.untilFailure = false;
    return plan;
  }

  void beginAll() {
    while (const auto run = m_schedule.next(Duration(0))) {
      m_runs.push_back(*run);
      m_ends.emplace(m_now + durationOf(*run), run->number);
    }
  }

  std::string runLines() const {
    std::string lines;
    std::set<const void*> told;
    for (std::size_t i = 0; i < std::min(m_runs.size(), kMostLines); ++i) {
      const PlannedRun& run = m_runs[i];
      lines += runLine(run);
      if (!told.insert(run.settings).second) continue;
      for (const auto& [name, value] : *run.settings) {
        lines += "       " + text::visible(name) + " = " + text::visible(value) + '\n';
      }
      for (const Limit& limit : *run.limits) lines += limitLine(limit);
    }
    const std::uint64_t all = m_schedule.total().value_or(m_runs.size());
    if (all > kMostLines) lines += "      ... and " + std::to_string(all - kMostLines) + " more\n";
    return lines;
  }

  std::string sumLine() const {
    const std::uint64_t all = m_schedule.total().value_or(m_runs.size());
    std::set<const OfferedTest*> unknown;
    for (const PlannedRun& run : m_runs) {
      if (durationOf(run).count() == 0) unknown.insert(run.test);
    }
    std::string line = counted(all, "run");
    if (m_plan.jobs > 1) line += ", up to " + std::to_string(m_plan.jobs) + " at a time";
    line += all > m_runs.size() ? ", longer than " : ", about ";
    line += textOf(m_now);
    if (!unknown.empty())
      line += " and " + counted(unknown.size(), "test") + " without an estimate";
    return line + '\n';
  }

  std::string repetitionLine() const {
    std::string how;
    if (m_plan.repeat && *m_plan.repeat > 1) how = counted(*m_plan.repeat, "time");
    if (m_plan.repeatFor) how += (how.empty() ? "for " : ", for ") + textOf(*m_plan.repeatFor);
    if (m_plan.untilFailure) how += how.empty() ? "until a test fails" : ", until a test fails";
    return how.empty() ? how : "All of it " + how + '\n';
  }

  std::string deadlineLine() const {
    return m_plan.deadline ? "The whole run: at most " + textOf(*m_plan.deadline) + '\n'
                           : std::string();
  }

  const Plan& m_plan;
  Schedule m_schedule;
  std::vector<PlannedRun> m_runs;
  std::set<std::pair<Duration, std::uint64_t>> m_ends;
  Duration m_now{0};
};

}  // namespace

std::string dryRun(const Plan& plan, const std::vector<OfferedTest>& offer) {
  Simulation simulation(plan, offer);
  simulation.run();
  return simulation.text();
}

}  // namespace engine
