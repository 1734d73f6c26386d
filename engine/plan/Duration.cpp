#include "engine/plan/Duration.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "engine/plan/PlanError.h"

namespace engine {
namespace {

struct Unit {
  std::string_view name;
  std::int64_t milliseconds;
};
constexpr Unit kUnits[] = {
    {"d", 86'400'000}, {"h", 3'600'000}, {"m", 60'000}, {"s", 1'000}, {"ms", 1}};

[[noreturn]] void refuseText(std::string_view text) {
  throw PlanError("\"" + std::string(text) +
                  "\" is no time; write it like 90s, 45m, 1h30m or 2d (at most 10000d)");
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Takes the digits off the front of `rest`.
std::int64_t takeNumber(std::string_view& rest, std::string_view whole) {
  std::int64_t number = 0;
  if (rest.empty() || !isDigit(rest.front())) refuseText(whole);
  for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1)) {
    number = number * 10 + (rest.front() - '0');
    if (number > kLongestDuration.count()) refuseText(whole);
  }
  return number;
}

/// Takes the unit off the front of `rest`: the first one from `units` on.
const Unit* takeUnit(std::string_view& rest, const Unit* units) {
  const std::size_t length =
      static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), isDigit) - rest.begin());
  const std::string_view name = rest.substr(0, length);
  const Unit* found =
      std::find_if(units, std::end(kUnits), [&](const Unit& unit) { return unit.name == name; });
  rest.remove_prefix(length);
  return found;
}

}  // namespace

Duration durationFrom(std::string_view text) {
  std::string_view rest = text;
  std::int64_t total = 0;
  const Unit* unit = std::begin(kUnits);
  do {
    const std::int64_t number = takeNumber(rest, text);
    unit = takeUnit(rest, unit);
    if (unit == std::end(kUnits)) refuseText(text);
    const std::int64_t most = (kLongestDuration.count() - total) / unit->milliseconds;
    if (number > most) refuseText(text);
    total += number * unit->milliseconds;
    ++unit;
  } while (!rest.empty());
  return Duration(total);
}

std::string textOf(Duration duration) {
  std::int64_t rest = duration.count();
  std::string text;
  for (const Unit& unit : kUnits) {
    if (rest < unit.milliseconds) continue;
    text += std::to_string(rest / unit.milliseconds).append(unit.name);
    rest %= unit.milliseconds;
  }
  return text.empty() ? "0s" : text;
}

Duration durationOfSeconds(double seconds) {
  const double longest = static_cast<double>(kLongestDuration.count()) / 1'000;
  if (!(seconds > 0)) return Duration(0);
  return std::chrono::seconds(static_cast<std::int64_t>(std::ceil(std::min(seconds, longest))));
}

}  // namespace engine
