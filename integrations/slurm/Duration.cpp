#include "integrations/slurm/Duration.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

struct Unit {
  std::string_view name;
  std::int64_t milliseconds;
};

constexpr std::array<Unit, 5> kUnits{
    {{"d", 86'400'000}, {"h", 3'600'000}, {"m", 60'000}, {"s", 1'000}, {"ms", 1}}};

/// Ten years: more is a slip of the pen.
constexpr std::int64_t kLongest = 3'650 * kUnits[0].milliseconds;

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// Takes the digits, or the letters, from the front.
std::string_view taken(std::string_view& text, bool digits) {
  const auto end = std::find_if(text.begin(), text.end(),
                                [digits](char letter) { return isDigit(letter) != digits; });
  const std::string_view part = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(part.size());
  return part;
}

/// -1 where it is no number, or too large.
std::int64_t numberFrom(std::string_view digits) {
  std::int64_t number = 0;
  for (const char digit : digits) {
    number = number * 10 + (digit - '0');
    if (number > kLongest) return -1;
  }
  return digits.empty() ? -1 : number;
}

/// -1 where the text is no duration.
std::int64_t millisecondsFrom(std::string_view text) {
  std::int64_t total = 0;
  const Unit* from = kUnits.begin();
  if (text.empty()) return -1;
  while (!text.empty()) {
    const std::int64_t number = numberFrom(taken(text, true));
    const std::string_view name = taken(text, false);
    const Unit* const unit =
        std::find_if(from, kUnits.end(), [name](const Unit& one) { return one.name == name; });
    if (number < 0 || unit == kUnits.end() || number > kLongest / unit->milliseconds) return -1;
    total += number * unit->milliseconds;
    from = unit + 1;
  }
  return total > kLongest ? -1 : total;
}

}  // namespace

Duration durationFrom(std::string_view text) {
  const std::int64_t milliseconds = millisecondsFrom(text);
  if (milliseconds < 0) {
    throw SettingError("\"" + std::string(text) + "\" is no time such as 90s, 10m or 1h30m");
  }
  return Duration(milliseconds);
}

std::string millisecondsText(Duration duration) { return std::to_string(duration.count()) + "ms"; }

std::string secondsText(Duration duration) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f s", static_cast<double>(duration.count()) / 1000);
  return text.data();
}

}  // namespace slurm
