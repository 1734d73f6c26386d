#include "providers/sensors/services/Course.h"

#include <algorithm>

namespace providers::sensors {

namespace {

void widen(Shown& shown, const std::optional<double>& value) {
  if (!value) {
    ++shown.unread;
    return;
  }
  shown.lowest = std::min(shown.lowest.value_or(*value), *value);
  shown.highest = std::max(shown.highest.value_or(*value), *value);
}

void note(std::optional<Phase>& first, bool set, Phase phase) {
  if (set && !first) first = phase;
}

}  // namespace

const char* phaseText(Phase phase) {
  switch (phase) {
    case Phase::Before:
      return "before the load";
    case Phase::UnderLoad:
      return "under load";
    case Phase::After:
      return "after the load";
  }
  return "";
}

bool SensorCourse::wasRead() const {
  return std::any_of(shown.begin(), shown.end(),
                     [](const Shown& one) { return one.highest.has_value(); });
}

SensorCourse& Course::courseOf(const Sensor& sensor, unsigned occurrence) {
  const std::string name = kindText(sensor.kind) + (" " + describe(sensor));
  const auto [place, added] = m_places.try_emplace({name, occurrence}, m_sensors.size());
  if (added) m_sensors.push_back({sensor, {}, {}, {}, {}});
  return m_sensors[place->second];
}

void Course::add(Phase phase, const std::vector<Sensor>& sensors) {
  std::map<std::string, unsigned> seen;
  std::vector<bool> shown(m_sensors.size(), false);
  for (const Sensor& sensor : sensors) {
    const unsigned occurrence = seen[kindText(sensor.kind) + (" " + describe(sensor))]++;
    SensorCourse& course = courseOf(sensor, occurrence);
    const auto place = static_cast<std::size_t>(&course - m_sensors.data());
    if (place < shown.size()) shown[place] = true;
    widen(course.shown[static_cast<std::size_t>(phase)], sensor.value);
    note(course.alarm, m_begun && sensor.alarm, phase);
    note(course.criticalAlarm, m_begun && sensor.criticalAlarm, phase);
    note(course.fault, m_begun && sensor.fault, phase);
  }
  // A chip may be gone altogether.
  for (std::size_t i = 0; i < shown.size(); ++i)
    if (!shown[i]) widen(m_sensors[i].shown[static_cast<std::size_t>(phase)], std::nullopt);
  m_begun = true;
}

bool Course::isCritical() const {
  return std::any_of(m_sensors.begin(), m_sensors.end(), [](const SensorCourse& course) {
    const auto& limit = course.sensor.limits.highCritical;
    const auto& highest = course.in(Phase::UnderLoad).highest;
    return course.sensor.kind == Kind::Temperature && limit && highest && *highest >= *limit;
  });
}

}  // namespace providers::sensors
