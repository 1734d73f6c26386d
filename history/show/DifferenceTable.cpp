#include <algorithm>
#include <cmath>

#include "history/show/Tables.h"
#include "history/show/Words.h"
#include "text/SafeText.h"

namespace history {
namespace {

std::string headOf(const RunRecord& run) {
  const std::string host = run.host.empty() ? std::string() : "  " + text::visible(run.host);
  return text::visible(run.id) + "  " + dateOf(run.started) + "  " + verdictOf(run) + host;
}

std::string sideOf(const std::optional<TestVerdict>& verdict) {
  if (!verdict) return "not in this run";
  std::string words = verdictOf(*verdict);
  if (verdict->repetitions > 1) {
    words += " (the worst of " + std::to_string(verdict->repetitions) + ")";
  }
  return words;
}

std::string sideOf(const std::optional<Measured>& measured, const std::string& unit) {
  return measured ? valueOf(*measured, unit) : "not measured";
}

/// " (+12.5 %)", where both are numbers and the first is not 0.
std::string changeOf(const MeasurementDifference& difference) {
  if (!difference.before || !difference.after) return {};
  const std::optional<double>& before = difference.before->mean;
  const std::optional<double>& after = difference.after->mean;
  if (!before || !after || *before == 0) return {};
  const double percent = std::round((*after - *before) / std::fabs(*before) * 1000) / 10;
  if (!std::isfinite(percent)) return {};
  return std::string(" (") + (percent > 0 ? "+" : "") + numberOf(percent) + " %)";
}

void writeTest(std::ostream& stream, const TestDifference& test) {
  stream << '\n' << text::visible(test.name) << '\n';
  if (!test.hasSameVerdict()) {
    stream << "  verdict: " << sideOf(test.before) << " -> " << sideOf(test.after) << '\n';
  }
  for (const MeasurementDifference& each : test.measurements) {
    if (each.isSame()) continue;
    stream << "  " << measurementOf(each.name, each.part) << ": " << sideOf(each.before, each.unit)
           << " -> " << sideOf(each.after, each.unit) << changeOf(each) << '\n';
  }
}

/// "1 test has", "2 tests have".
std::string testsHave(std::ptrdiff_t count) {
  return std::to_string(count) + (count == 1 ? " test has" : " tests have");
}

}  // namespace

void writeDifference(std::ostream& stream, const Difference& difference) {
  const std::vector<TestDifference>& tests = difference.tests;
  const auto others = std::count_if(tests.begin(), tests.end(), [](const TestDifference& test) {
    return !test.hasSameVerdict();
  });
  const auto same = std::count_if(tests.begin(), tests.end(),
                                  [](const TestDifference& test) { return test.isSame(); });
  stream << "before  " << headOf(difference.before) << '\n';
  stream << "after   " << headOf(difference.after) << '\n';
  stream << testsHave(others) << " another verdict, " << testsHave(same)
         << " not changed at all.\n";
  for (const TestDifference& test : tests) {
    if (!test.isSame()) writeTest(stream, test);
  }
}

}  // namespace history
