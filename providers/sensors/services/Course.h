#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "providers/sensors/finding/Sensor.h"

namespace providers::sensors {

enum class Phase : std::uint8_t { Before, UnderLoad, After };
constexpr std::size_t kPhases = 3;

/// "before the load"
const char* phaseText(Phase phase);

/// What a sensor showed in a phase.
struct Shown {
  std::optional<double> lowest;
  std::optional<double> highest;
  unsigned unread = 0;  ///< how often it could not be read
};

/// A sensor in the course of a test.
struct SensorCourse {
  Sensor sensor;  ///< as it was at first
  std::array<Shown, kPhases> shown;
  std::optional<Phase> alarm;  ///< when first
  std::optional<Phase> criticalAlarm;
  std::optional<Phase> fault;

  const Shown& in(Phase phase) const { return shown[static_cast<std::size_t>(phase)]; }
  bool wasRead() const;
};

/// Keeps what all sensors show, time after time.
class Course {
 public:
  /// A chip keeps an alarm until it is read: those of the very first reading may be of yesterday.
  void add(Phase phase, const std::vector<Sensor>& sensors);

  const std::vector<SensorCourse>& sensors() const { return m_sensors; }
  /// Whether it is so hot that nobody should go on.
  bool isCritical() const;

 private:
  SensorCourse& courseOf(const Sensor& sensor, unsigned occurrence);

  std::vector<SensorCourse> m_sensors;
  std::map<std::pair<std::string, unsigned>, std::size_t> m_places;
  bool m_begun = false;
};

}  // namespace providers::sensors
