#include "fleet/peers/Direction.h"

#include <algorithm>
#include <array>
#include <string>

#include "fleet/reading/Names.h"

namespace fleet {
namespace {

template <std::size_t Count>
bool hasOneOf(const std::string& text, const std::array<std::string_view, Count>& words) {
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view word) { return text.find(word) != std::string::npos; });
}

/// Faults in a time, and the times that a thing has lived through.
constexpr std::array<std::string_view, 12> kNeither = {
    "error",    "fault",    "fail",   "retr",        "drop",    "loss",
    "power-on", "power on", "uptime", "temperature", "correct", "wear"};
constexpr std::array<std::string_view, 9> kSpeeds = {"bandwidth", "throughput", "speed",
                                                     "iops",      "flops",      "transfer rate",
                                                     "frequency", "ops/",       "rate"};
constexpr std::array<std::string_view, 5> kDurations = {"latency", "duration", "elapsed", "delay",
                                                        "time"};
constexpr std::array<std::string_view, 15> kTimeUnits = {
    "s",      "ms",  "us",      "\xC2\xB5s",    "\xCE\xBCs",    "ns",          "sec", "seconds",
    "second", "min", "minutes", "milliseconds", "microseconds", "nanoseconds", "msec"};

bool isASpeed(const std::string& unit) {
  const bool isOverTime = unit.size() > 2 && unit.compare(unit.size() - 2, 2, "/s") == 0;
  return isOverTime || hasOneOf<5>(unit, {"bps", "/sec", "per second", "hz", "flops"}) ||
         unit == "iops";
}

}  // namespace

Worse worseOf(std::string_view measurement, std::string_view unit) {
  const std::string name = lowered(measurement);
  const std::string of = lowered(unit);
  if (hasOneOf(name, kNeither)) return Worse::kUnknown;
  if (isASpeed(of)) return Worse::kLow;
  if (std::find(kTimeUnits.begin(), kTimeUnits.end(), of) != kTimeUnits.end()) return Worse::kHigh;
  if (!of.empty()) return Worse::kUnknown;
  if (hasOneOf(name, kSpeeds)) return Worse::kLow;
  return hasOneOf(name, kDurations) ? Worse::kHigh : Worse::kUnknown;
}

}  // namespace fleet
