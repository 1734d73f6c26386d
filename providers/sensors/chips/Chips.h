#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/sensors/finding/Sensor.h"

namespace providers::sensors {

/// What reads the machine's chips, and its name for the record, with why it is not a better one.
struct ChipReader {
  ReadSensors read;
  std::string name;
};

/// libsensors, as the machine's administrator has set it up (names, scales, what is not connected),
/// where it is installed and knows a chip; otherwise the system's files below `sys`. `folder` is
/// where the module lies that is linked with it.
ChipReader openChips(const std::string& folder, const std::string& sys);

}  // namespace providers::sensors
