#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

/// A figure that must hold: the time of one benchmark beside that of another of the same run.
struct RatioGoal {
  std::string what;   ///< for display
  std::string ours;   ///< a benchmark's name
  std::string floor;  ///< what it stands beside
  double scale;       ///< the floor's time counts this many times
  double most;        ///< the largest ratio that is good
};

/// Prints the benchmarks as usual, and keeps the median of each one's repetitions.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;

  /// Prints each ratio with its goal; false when one was not met. A goal whose benchmarks were
  /// filtered out is passed over.
  bool printRatios(const std::vector<RatioGoal>& goals) const;

 private:
  std::map<std::string, double> m_medians;  ///< seconds of processor time
};

/// Runs the registered benchmarks, their repetitions interleaved so that both sides of a ratio see
/// the same machine. The exit status is 1 when a goal was not met.
int runWithGoals(int argc, char** argv, const std::vector<RatioGoal>& goals);
