#include "history/show/Words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "engine/events/EventNames.h"
#include "engine/events/Timestamp.h"
#include "text/SafeText.h"

namespace history {
namespace {

void add(std::string& line, std::uint64_t count, const char* word) {
  if (count == 0) return;
  if (!line.empty()) line += ", ";
  line += std::to_string(count) + " " + word;
}

/// "12 min 3 s": the smaller one only where it is not 0.
std::string twoUnits(std::int64_t large, const char* largeUnit, std::int64_t small,
                     const char* smallUnit) {
  std::string words = std::to_string(large) + largeUnit;
  if (small != 0) words += " " + std::to_string(small) + smallUnit;
  return words;
}

}  // namespace

std::string verdictOf(const RunRecord& run) {
  if (run.state == RunState::kRunning) return "running";
  if (run.state == RunState::kCutOff || !run.outcome) return "cut off";
  return engine::nameOf(*run.outcome);
}

std::string verdictOf(const TestVerdict& verdict) {
  return verdict.worst ? engine::nameOf(*verdict.worst) : "cut off";
}

std::string countsOf(const Counts& counts) {
  std::string line;
  add(line, counts.passed, "passed");
  add(line, counts.warned, "warned");
  add(line, counts.failed, "failed");
  add(line, counts.unfinished, "unfinished");
  add(line, counts.skipped, "skipped");
  return line.empty() ? "no tests" : line;
}

std::string durationOf(std::chrono::microseconds duration) {
  const std::int64_t all = std::max<std::int64_t>(duration.count(), 0);
  const std::int64_t seconds = all / 1'000'000;
  if (seconds < 60) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f s",
                  std::floor(static_cast<double>(all) / 1e5) / 10);
    return text.data();
  }
  if (seconds < 3600) return twoUnits(seconds / 60, " min", seconds % 60, " s");
  return twoUnits(seconds / 3600, " h", seconds / 60 % 60, " min");
}

std::string dateOf(engine::Time time) {
  std::string date = engine::timestampOf(time).substr(0, 19);
  date[10] = ' ';
  return date;
}

std::string numberOf(double number) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.6g", number);
  return text.data();
}

std::string valueOf(const Measured& measured, const std::string& unit) {
  std::string value = measured.mean ? numberOf(*measured.mean) : text::visible(measured.text);
  if (!unit.empty()) value += " " + text::visible(unit);
  return value;
}

std::string measurementOf(const std::string& name, const std::string& part) {
  return text::visible(name) + (part.empty() ? std::string() : " of " + text::visible(part));
}

std::size_t columnsOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0U) != 0x80U;
  }));
}

std::string padded(const std::string& text, std::size_t columns) {
  const std::size_t own = columnsOf(text);
  return own < columns ? text + std::string(columns - own, ' ') : text;
}

std::string paddedBefore(const std::string& text, std::size_t columns) {
  const std::size_t own = columnsOf(text);
  return own < columns ? std::string(columns - own, ' ') + text : text;
}

}  // namespace history
