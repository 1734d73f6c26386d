#include "engine/plan/Limits.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "engine/plan/Glob.h"

namespace engine {
namespace {

bool isAbout(const Limit& limit, const std::string& name) {
  return limit.measurement == name || matchesGlob(limit.measurement, name);
}

Compliance complianceOf(const Measurement& measurement, bool isPlanned) {
  if (!measurement.minimum && !measurement.maximum) return Compliance::kUnlimited;
  const double* const number = std::get_if<double>(&measurement.value);
  if (!number) return isPlanned ? Compliance::kNoNumber : Compliance::kUnlimited;
  if (std::isnan(*number)) return Compliance::kNoNumber;
  if (measurement.minimum && *number < *measurement.minimum) return Compliance::kBelow;
  if (measurement.maximum && *number > *measurement.maximum) return Compliance::kAbove;
  return Compliance::kInside;
}

std::string withUnit(double number, const std::string& unit) {
  char buffer[64];
  std::string text(buffer, std::to_chars(buffer, std::end(buffer), number).ptr);
  return unit.empty() ? text : text + ' ' + unit;
}

}  // namespace

CheckedMeasurement checked(Measurement measurement, const std::vector<Limit>& limits) {
  bool isPlanned = false;
  for (const Limit& limit : limits) {
    if (!isAbout(limit, measurement.name)) continue;
    isPlanned = isPlanned || limit.minimum || limit.maximum;
    if (limit.minimum) measurement.minimum = limit.minimum;
    if (limit.maximum) measurement.maximum = limit.maximum;
  }
  const Compliance compliance = complianceOf(measurement, isPlanned);
  return {std::move(measurement), compliance};
}

std::vector<Limit> unmetLimits(const std::vector<Limit>& limits,
                               const std::vector<std::string>& measured) {
  std::vector<Limit> unmet;
  for (const Limit& limit : limits) {
    if (std::none_of(measured.begin(), measured.end(),
                     [&](const std::string& name) { return isAbout(limit, name); })) {
      unmet.push_back(limit);
    }
  }
  return unmet;
}

std::string complaintAbout(const CheckedMeasurement& checked) {
  const Measurement& measurement = checked.measurement;
  if (checked.compliance == Compliance::kNoNumber) return measurement.name + " is no number";
  const bool isBelow = checked.compliance == Compliance::kBelow;
  if (!isBelow && checked.compliance != Compliance::kAbove) return {};
  return measurement.name + ' ' + withUnit(std::get<double>(measurement.value), measurement.unit) +
         (isBelow ? " is below " : " is above ") +
         withUnit(isBelow ? *measurement.minimum : *measurement.maximum, measurement.unit);
}

}  // namespace engine
