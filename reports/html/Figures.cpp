#include "reports/html/Figures.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "engine/events/Timestamp.h"

namespace reports::html {
namespace {

/// What is farther out would only make a page's numbers long.
constexpr double kFarthest = 1e6;

std::string spelt(double number, std::chars_format format, int precision) {
  char digits[400];
  const std::to_chars_result end =
      std::to_chars(digits, digits + sizeof digits, number, format, precision);
  return std::string(digits, end.ptr);
}

std::string whole(double number) { return spelt(number, std::chars_format::fixed, 0); }

}  // namespace

std::string figure(double number) {
  const bool isShortWhole = std::abs(number) < 1e12 && number == std::floor(number);
  return isShortWhole ? whole(number) : spelt(number, std::chars_format::general, 6);
}

std::string coordinate(double number) {
  if (std::isnan(number)) return "0";
  return spelt(std::clamp(number, -kFarthest, kFarthest), std::chars_format::fixed, 2);
}

std::string duration(double seconds) {
  if (!(seconds > 0)) return "0 s";
  if (seconds < 9.95) return spelt(seconds, std::chars_format::fixed, 1) + " s";
  const double rounded = std::floor(seconds + 0.5);
  if (rounded < 60) return whole(rounded) + " s";
  const double minutes = std::floor(rounded / 60);
  if (minutes < 60) return whole(minutes) + " min " + whole(rounded - 60 * minutes) + " s";
  const double hours = std::floor(minutes / 60);
  return whole(hours) + " h " + whole(minutes - 60 * hours) + " min";
}

double secondsBetween(engine::Time from, engine::Time to) {
  return to <= from ? 0 : std::chrono::duration<double>(to - from).count();
}

std::string clockTime(engine::Time time) {
  std::string text = engine::timestampOf(time).substr(0, 19);
  std::replace(text.begin(), text.end(), 'T', ' ');
  return text;
}

std::string counted(std::uint64_t count, std::string_view what) {
  std::string text = std::to_string(count) + " ";
  text += what;
  return count == 1 ? text : text + "s";
}

std::string valueText(const engine::MeasuredValue& value) {
  if (const auto* const number = std::get_if<double>(&value)) return figure(*number);
  if (const auto* const truth = std::get_if<bool>(&value)) return *truth ? "yes" : "no";
  return std::get<std::string>(value);
}

}  // namespace reports::html
