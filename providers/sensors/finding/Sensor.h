#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace providers::sensors {

enum class Kind : std::uint8_t { Temperature, Fan, Voltage, Current, Power, Humidity };

/// What a sensor's own limits are, as its chip, its driver or the firmware has them.
struct Limits {
  std::optional<double> lowCritical;
  std::optional<double> low;
  std::optional<double> high;
  std::optional<double> highCritical;
};

/// A sensor and what it shows at a time, in degree C, 1/min, V, A, W or %.
struct Sensor {
  std::string chip;   ///< "coretemp (coretemp.0)", printable
  std::string label;  ///< "Package id 0", printable
  Kind kind = Kind::Temperature;
  std::optional<double> value;  ///< nothing when it cannot be read
  Limits limits;
  bool alarm = false;          ///< the chip says that a limit is passed
  bool criticalAlarm = false;  ///< the same of a critical one
  bool fault = false;          ///< the chip says that the sensor is broken
};

/// All sensors, in an order that stays.
using ReadSensors = std::function<std::vector<Sensor>()>;

/// "coretemp (coretemp.0), Package id 0"
std::string describe(const Sensor& sensor);

const char* kindText(Kind kind);  ///< "Temperature"
const char* unitText(Kind kind);  ///< "degree C"

/// What the chip has at a name's end ("_crit" of "temp1_crit"), in the sensor's unit; nothing when
/// it has no such thing or does not give it.
using ValueAt = std::function<std::optional<double>(const char* end)>;

/// Sets everything that a sensor shows.
void fill(Sensor& sensor, const ValueAt& valueAt);

/// Drops limits that cannot be meant: those of a chip that nobody has set up.
void dropNonsense(Sensor& sensor);

/// Whether anything tells what is too much or too little.
bool hasLimits(const Sensor& sensor);

}  // namespace providers::sensors
