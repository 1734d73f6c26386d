#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "host/options/Options.h"

namespace host {

struct ScreenSize {
  unsigned columns = 80;
  unsigned rows = 24;
};

/// How much is told of a run.
enum class Detail {
  kQuiet,   ///< verdicts that are not a pass, and the summary
  kNormal,  ///< progress, verdicts, findings
  kVerbose  ///< also output, log, messages, measurements, steps
};

struct DisplayStyle {
  using Clock = std::chrono::steady_clock;

  bool redraws = false;  ///< running tests have a line each that is drawn anew in its place
  bool colours = false;
  Detail detail = Detail::kNormal;
  Level level = Level::kImmediate;  ///< which of a test's results is shown
  std::vector<std::string> told;  ///< warnings of the run that were told before, and are not again
  /// How many seconds a test takes to its verdict that has done its work after so many; null: as
  /// many.
  double (*toVerdict)(double seconds) = nullptr;
  std::function<Clock::time_point()> now = Clock::now;
  std::function<ScreenSize()> size = [] { return ScreenSize(); };  ///< asked at each redraw
};

}  // namespace host
