#include "providers/sensors/finding/Sensor.h"

#include <algorithm>
#include <initializer_list>

namespace providers::sensors {

std::string describe(const Sensor& sensor) { return sensor.chip + ", " + sensor.label; }

const char* kindText(Kind kind) {
  switch (kind) {
    case Kind::Temperature:
      return "Temperature";
    case Kind::Fan:
      return "Fan";
    case Kind::Voltage:
      return "Voltage";
    case Kind::Current:
      return "Current";
    case Kind::Power:
      return "Power";
    case Kind::Humidity:
      return "Humidity";
  }
  return "Sensor";
}

const char* unitText(Kind kind) {
  switch (kind) {
    case Kind::Temperature:
      return "degree C";
    case Kind::Fan:
      return "1/min";
    case Kind::Voltage:
      return "V";
    case Kind::Current:
      return "A";
    case Kind::Power:
      return "W";
    case Kind::Humidity:
      return "%";
  }
  return "";
}

void fill(Sensor& sensor, const ValueAt& valueAt) {
  const auto any = [&valueAt](std::initializer_list<const char*> ends) {
    return std::any_of(ends.begin(), ends.end(),
                       [&valueAt](const char* end) { return valueAt(end).value_or(0) != 0; });
  };
  sensor.value = valueAt("_input");
  sensor.limits = {valueAt("_lcrit"), valueAt("_min"), valueAt("_max"), valueAt("_crit")};
  if (!sensor.limits.highCritical) sensor.limits.highCritical = valueAt("_emergency");
  sensor.alarm = any({"_alarm", "_min_alarm", "_max_alarm"});
  sensor.criticalAlarm = any({"_crit_alarm", "_lcrit_alarm", "_emergency_alarm"});
  sensor.fault = any({"_fault"});
  const Limits told = sensor.limits;
  dropNonsense(sensor);
  // What a chip compares with limits that nobody has set says nothing; those that make sense are
  // compared by the test, too.
  const Limits& kept = sensor.limits;
  const auto isDropped = [](const std::optional<double>& before,
                            const std::optional<double>& after) { return before && !after; };
  if (isDropped(told.low, kept.low) || isDropped(told.high, kept.high)) sensor.alarm = false;
  if (isDropped(told.lowCritical, kept.lowCritical) ||
      isDropped(told.highCritical, kept.highCritical))
    sensor.criticalAlarm = false;
}

void dropNonsense(Sensor& sensor) {
  Limits& limits = sensor.limits;
  const auto dropIf = [](std::optional<double>& limit, auto wrong) {
    if (limit && wrong(*limit)) limit.reset();
  };
  const auto notPositive = [](double limit) { return limit <= 0; };
  const auto isZero = [](double limit) { return limit == 0; };
  // The ends of what the registers hold stand for no limit.
  const auto noTemperature = [](double limit) { return limit <= 0 || limit >= 250; };
  if (sensor.kind == Kind::Temperature) {
    dropIf(limits.high, noTemperature);
    dropIf(limits.highCritical, noTemperature);
    for (auto* lower : {&limits.low, &limits.lowCritical})
      dropIf(*lower, [](double limit) { return limit == 0 || limit <= -50; });
  } else if (sensor.kind == Kind::Voltage) {
    // The lower end may be a negative voltage's limit; only a range that is none is nonsense.
    if (limits.low && limits.high && *limits.low >= *limits.high) limits.low = limits.high = {};
    for (auto* one : {&limits.lowCritical, &limits.highCritical}) dropIf(*one, isZero);
  } else {
    for (auto* one : {&limits.low, &limits.lowCritical, &limits.high, &limits.highCritical})
      dropIf(*one, notPositive);
  }
  if (limits.low && limits.high && *limits.low >= *limits.high) limits.low.reset();
}

bool hasLimits(const Sensor& sensor) {
  const Limits& limits = sensor.limits;
  return limits.lowCritical || limits.low || limits.high || limits.highCritical;
}

}  // namespace providers::sensors
