#include "engine/plan/Estimate.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "engine/plan/CimText.h"

namespace engine {
namespace {

std::vector<std::string> elementsOf(const SettingValues& settings, const char* name) {
  for (const auto& [property, value] : settings) {
    if (property == name) return arrayElements(value);
  }
  return {};
}

/// The number in digits alone; 0 where there is none.
double parameter(const std::string& text) {
  std::uint32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end ? number : 0;
}

}  // namespace

double expectedSeconds(const OfferedTest& test, const SettingValues& settings) {
  const double once = test.estimate > 0 ? test.estimate : 0;
  const auto kinds = elementsOf(settings, "LoopControl");
  const auto parameters = elementsOf(settings, "LoopControlParameter");
  constexpr double kEndless = std::numeric_limits<double>::infinity();
  double shortest = kEndless;
  for (std::size_t i = 0; i < std::min(kinds.size(), parameters.size()); ++i) {
    const double number = parameter(parameters[i]);
    // Of a test without an estimate nobody knows what its loops take.
    if (kinds[i] == "3" && once > 0) shortest = std::min(shortest, number * once);
    if (kinds[i] == "4") shortest = std::min(shortest, number + once);
  }
  return shortest == kEndless ? once : shortest;
}

}  // namespace engine
