#include "bench/RatioReporter.h"

#include <cstdio>

namespace {

constexpr char kMedian[] = "median";

}  // namespace

bool RatioReporter::ReportContext(const Context& context) {
  return ConsoleReporter::ReportContext(context);
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type == Run::RT_Aggregate && run.aggregate_name == kMedian) {
      m_medians[run.run_name.function_name + (run.run_name.args.empty() ? "" : "/") +
                run.run_name.args] =
          run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    }
  }
  ConsoleReporter::ReportRuns(runs);
}

bool RatioReporter::printRatios(const std::vector<RatioGoal>& goals) const {
  bool good = true;
  for (const RatioGoal& goal : goals) {
    const auto ours = m_medians.find(goal.ours);
    const auto floor = m_medians.find(goal.floor);
    if (ours == m_medians.end() || floor == m_medians.end()) {
      continue;
    }
    const double ratio = ours->second / (floor->second * goal.scale);
    const bool met = ratio <= goal.most;
    good = good && met;
    std::printf("%-62s %6.3f  (goal: at most %.2f)%s\n", goal.what.c_str(), ratio, goal.most,
                met ? "" : "  MISSED");
  }
  return good;
}

int runWithGoals(int argc, char** argv, const std::vector<RatioGoal>& goals) {
  std::vector<char*> arguments(argv, argv + argc);
  std::vector<std::string> defaults{"--benchmark_repetitions=9",
                                    "--benchmark_enable_random_interleaving=true",
                                    "--benchmark_report_aggregates_only=true"};
  std::vector<char*> all{arguments.front()};
  for (std::string& option : defaults) {
    all.push_back(option.data());
  }
  all.insert(all.end(), arguments.begin() + 1, arguments.end());
  int count = static_cast<int>(all.size());
  benchmark::Initialize(&count, all.data());
  if (benchmark::ReportUnrecognizedArguments(count, all.data())) {
    return 2;
  }
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return reporter.printRatios(goals) ? 0 : 1;
}
