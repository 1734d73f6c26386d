#pragma once

#include <string>
#include <vector>

#include "providers/sensors/finding/Sensor.h"

namespace providers::sensors {

/// Whether there is any sensor below `sys`, which is "/sys" but in tests; none is read.
bool hasSensors(const std::string& sys);

/// The sensors of all chips (`hwmon`).
std::vector<Sensor> readChips(const std::string& sys);

/// The firmware's thermal zones, but for those that are among the chips, too.
std::vector<Sensor> readZones(const std::string& sys);

}  // namespace providers::sensors
