#include "engine/plan/Estimate.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "engine/plan/CimText.h"
#include "text/ArrayText.h"

namespace engine {
namespace {

std::string valueOf(const SettingValues& settings, std::string_view name) {
  for (const auto& [property, value] : settings) {
    if (property == name) return value;
  }
  return {};
}

/// The number in digits alone; 0 where there is none.
double number(const std::string& text) {
  std::uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end ? value : 0;
}

/// What ends a run that goes on for more than one loop.
struct Loops {
  std::vector<double> counts, seconds;
};

Loops loopsOf(const SettingValues& settings) {
  Loops loops;
  if (const double count = number(valueOf(settings, "Loops")); count > 1) {
    loops.counts.push_back(count);
  }
  if (const double seconds = number(valueOf(settings, "Seconds")); seconds > 0) {
    loops.seconds.push_back(seconds);
  }
  const auto kinds = text::arrayElements(valueOf(settings, "LoopControl"));
  const auto parameters = text::arrayElements(valueOf(settings, "LoopControlParameter"));
  for (std::size_t i = 0; i < std::min(kinds.size(), parameters.size()); ++i) {
    if (kinds[i] == "3") loops.counts.push_back(number(parameters[i]));
    if (kinds[i] == "4") loops.seconds.push_back(number(parameters[i]));
  }
  return loops;
}

/// How many times as much is tested as by default: what is to be covered, of what is covered then.
double coverageFactor(const OfferedTest& test, const SettingValues& settings) {
  constexpr std::string_view kCoverage = "PercentOfTestCoverage";
  const double wanted = number(valueOf(settings, kCoverage));
  const auto declared =
      std::find_if(test.settings.begin(), test.settings.end(),
                   [&](const SettingDeclaration& one) { return one.name == kCoverage; });
  if (wanted == 0 || declared == test.settings.end()) return 1;
  const double usual = number(declared->value);
  return usual > 0 ? wanted / usual : 1;
}

}  // namespace

double expectedSeconds(const OfferedTest& test, const SettingValues& settings) {
  const double once = (test.estimate > 0 ? test.estimate : 0) * coverageFactor(test, settings);
  const Loops loops = loopsOf(settings);
  constexpr double kEndless = std::numeric_limits<double>::infinity();
  double shortest = kEndless;
  for (const double count : loops.counts) {
    // Of a test without an estimate nobody knows what its loops take.
    if (once > 0) shortest = std::min(shortest, count * once);
  }
  for (const double seconds : loops.seconds) shortest = std::min(shortest, seconds + once);
  return shortest == kEndless ? once : shortest;
}

double secondsToVerdict(double expected) {
  constexpr double kPause = 5;
  return expected > 0 ? (std::ceil(expected / kPause) + 1) * kPause : 0;
}

}  // namespace engine
