#include "providers/sensors/services/SensorFindings.h"

#include <array>

namespace providers::sensors {

namespace {

constexpr std::array<Phase, kPhases> kAll{Phase::Before, Phase::UnderLoad, Phase::After};

std::string whatToDo(const SensorCourse& course) {
  const std::string name = describe(course.sensor);
  switch (course.sensor.kind) {
    case Kind::Temperature:
      return "clean air inlets and heat sinks, see that every fan turns and that the heat sink "
             "at " +
             name + " sits tightly; replace its thermal paste if that does not help";
    case Kind::Fan:
      return "clean the fan at " + name +
             " and check its plug; replace it if it stays too slow or stands still";
    case Kind::Voltage:
      return "check the plugs of the power supply; replace the power supply, and then the board "
             "that measures " +
             name;
    case Kind::Current:
    case Kind::Power:
      return "compare what is built in with what the supply of " + name +
             " is made for; replace that supply if it is not overloaded";
    case Kind::Humidity:
      return "mend the air conditioning of the room";
  }
  return {};
}

Finding finding(const SensorCourse& course, CompletionState state, const char* code,
                const std::string& text) {
  Finding result;
  result.state = state;
  result.code = code;
  result.text = std::string(kindText(course.sensor.kind)) + " of " + describe(course.sensor) + text;
  result.whatToDo = whatToDo(course);
  result.part = {course.sensor.label, course.sensor.chip, {}};
  return result;
}

/// A rule about a limit; the first one that is broken is told.
struct LimitRule {
  std::optional<double> Limits::*limit;
  bool upper;
  bool reached;  ///< what is at the limit breaks it, too
  const char* name;
  const char* code;
  CompletionState state;
};

constexpr std::array<LimitRule, 4> kRules{{
    {&Limits::highCritical, true, true, "critical limit", "Critical limit",
     CompletionState::Failed},
    {&Limits::lowCritical, false, true, "critical limit", "Critical limit",
     CompletionState::Failed},
    {&Limits::high, true, false, "limit", "Limit", CompletionState::Warning},
    {&Limits::low, false, false, "limit", "Limit", CompletionState::Warning},
}};

/// " is above its limit under load: expected at most 80.0 degree C, found 80.5 degree C"
std::string beyond(Kind kind, const LimitRule& rule, double limit, double found, Phase phase) {
  const char* const is = rule.reached ? " has reached its "
                         : rule.upper ? " is above its "
                                      : " is below its ";
  const char* const expected = rule.reached ? (rule.upper ? "less than " : "more than ")
                               : rule.upper ? "at most "
                                            : "at least ";
  return std::string(is) + rule.name + " " + phaseText(phase) + ": expected " + expected +
         valueText(kind, limit) + ", found " + valueText(kind, found);
}

bool breaks(const LimitRule& rule, double value, double limit) {
  if (rule.reached && value == limit) return true;
  return rule.upper ? value > limit : value < limit;
}

/// A fan that stands still although it has a least speed, or that stood still after it had turned,
/// as fans of graphics cards, supplies and laptops may when they have nothing to cool.
std::optional<Finding> stopped(const SensorCourse& course) {
  if (course.sensor.kind != Kind::Fan) return std::nullopt;
  const auto& least = course.sensor.limits.low;
  bool turned = false;
  for (const Phase phase : kAll) {
    const Shown& shown = course.in(phase);
    if (shown.lowest && *shown.lowest == 0 && (least || turned))
      return finding(course, least ? CompletionState::Failed : CompletionState::Warning,
                     "Fan stopped",
                     std::string(" stands still ") + phaseText(phase) + ": expected " +
                         (least ? "at least " + valueText(Kind::Fan, *least)
                                : std::string("that it goes on turning")) +
                         ", found 0 1/min");
    turned = turned || (shown.highest && *shown.highest > 0);
  }
  return std::nullopt;
}

std::optional<Finding> beyondLimit(const SensorCourse& course) {
  for (const LimitRule& rule : kRules) {
    const auto& limit = course.sensor.limits.*rule.limit;
    for (const Phase phase : kAll) {
      const Shown& shown = course.in(phase);
      const auto& value = rule.upper ? shown.highest : shown.lowest;
      if (limit && value && breaks(rule, *value, *limit))
        return finding(course, rule.state, rule.code,
                       beyond(course.sensor.kind, rule, *limit, *value, phase));
    }
  }
  return std::nullopt;
}

std::optional<Finding> alarm(const SensorCourse& course) {
  if (course.criticalAlarm)
    return finding(
        course, CompletionState::Failed, "Critical alarm",
        std::string(": the chip reports a critical alarm ") + phaseText(*course.criticalAlarm));
  if (course.alarm)
    return finding(course, CompletionState::Warning, "Alarm",
                   std::string(": the chip reports an alarm ") + phaseText(*course.alarm));
  return std::nullopt;
}

std::optional<Finding> broken(const SensorCourse& course) {
  if (!course.fault) return std::nullopt;
  Finding result =
      finding(course, CompletionState::Warning, "Sensor fault",
              std::string(": the chip says that the sensor is broken ") + phaseText(*course.fault));
  result.whatToDo = "check the plug of the sensor " + describe(course.sensor) +
                    "; one that nothing is plugged into can be left out (\"ignore\" in "
                    "/etc/sensors.d)";
  return result;
}

/// It was read before, and then it could not be any more.
std::optional<Finding> fallenSilent(const SensorCourse& course) {
  bool read = false;
  for (const Phase phase : kAll) {
    const Shown& shown = course.in(phase);
    if (shown.unread > 0 && (read || shown.highest)) {
      Finding result =
          finding(course, CompletionState::Warning, "Sensor silent",
                  std::string(": the sensor could not be read any more ") + phaseText(phase));
      result.whatToDo = "look into the system's log for what the chip's driver says";
      return result;
    }
    read = read || shown.highest;
  }
  return std::nullopt;
}

}  // namespace

std::string valueText(Kind kind, double value) {
  switch (kind) {
    case Kind::Fan:
      return formatted("%.0f %s", value, unitText(kind));
    case Kind::Voltage:
      return formatted("%.3f %s", value, unitText(kind));
    default:
      return formatted("%.1f %s", value, unitText(kind));
  }
}

std::vector<Finding> findingsOf(const SensorCourse& course) {
  // What a broken sensor shows means nothing.
  for (const auto rule : {broken, stopped, beyondLimit, alarm, fallenSilent})
    if (auto found = rule(course)) return {std::move(*found)};
  return {};
}

}  // namespace providers::sensors
