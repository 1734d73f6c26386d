#include "host/display/TestLine.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "text/Columns.h"
#include "text/SafeText.h"

namespace host {
namespace {

/// Where the columns behind the name begin, if there is room and the name is not longer.
constexpr std::size_t kNameColumns = 44;
/// Longer than any test takes; more would not fit into a number.
constexpr double kLongest = 999 * 3600.0;

std::string percentText(double percent) {
  char text[16];
  const double shown = std::isfinite(percent) ? std::clamp(percent, 0.0, 100.0) : 0.0;
  std::snprintf(text, sizeof text, "%3d%%", static_cast<int>(shown));
  return text;
}

/// With blanks in front, so that it takes at least `columns`.
std::string filledUp(const std::string& text, std::size_t columns) {
  return text.size() >= columns ? text : std::string(columns - text.size(), ' ') + text;
}

/// From the test's beginning until all is done; negative where nobody knows.
double timeForTheWork(const RunningTest& test) {
  const double told = test.percentAt < 0 ? test.elapsed : test.percentAt;
  const double done = std::clamp(test.percent, 0.0, 100.0) / 100;
  // What is seen to be done was done before.
  if (done == 1 && test.toVerdict != nullptr) return std::max(told - 1, 0.001);
  const double byProgress = done > 0 ? told / done : -1;
  const double byEstimate = test.estimate > test.elapsed ? test.estimate : -1;
  if (byProgress < 0) return byEstimate;
  if (byEstimate < 0) return byProgress;
  // The farther the test is, the more what it has done says about the rest.
  return done * byProgress + (1 - done) * byEstimate;
}

}  // namespace

std::string clockText(double seconds) {
  const double whole = std::isfinite(seconds) ? std::clamp(seconds, 0.0, kLongest) : 0.0;
  const auto all = static_cast<long>(whole);
  char text[32];
  if (all >= 3600) {
    std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", all / 3600, all / 60 % 60, all % 60);
  } else {
    std::snprintf(text, sizeof text, "%ld:%02ld", all / 60, all % 60);
  }
  return text;
}

double remaining(const RunningTest& test) {
  double all = timeForTheWork(test);
  if (test.toVerdict == nullptr) return all < 0 ? -1 : all - test.elapsed;
  // Past its estimate it may have been done in time: nobody has looked yet.
  if (all < 0) all = test.estimate;
  if (all <= 0) return -1;
  const double left = test.toVerdict(all) - test.elapsed;
  return left < 0 ? -1 : left;
}

std::string nameColumn(const std::string& name, std::size_t columns, std::size_t follow) {
  const std::string shown = text::visible(name);
  const std::size_t room = columns > follow ? columns - follow : 0;
  const std::size_t wanted =
      std::min(room, std::max(text::columnsOf(shown), std::min(kNameColumns, room)));
  std::string result = text::fitted(shown, wanted);
  result.append(wanted - std::min(wanted, text::columnsOf(result)), ' ');
  return result;
}

std::string runningLine(const RunningTest& test, std::size_t columns) {
  const std::string percent = "  " + percentText(test.percent);
  const std::string elapsed = "  " + filledUp(clockText(test.elapsed), 5);
  const double left = remaining(test);
  const std::string rest =
      left < 0 ? std::string() : "  " + filledUp(clockText(std::round(left)), 5) + " left";
  for (const std::string& behind : {percent + elapsed + rest, percent + elapsed, percent}) {
    if (columns < kShortestName + behind.size()) continue;
    return nameColumn(test.name, columns, behind.size()) + behind;
  }
  return text::fitted(text::visible(test.name), columns);
}

}  // namespace host
