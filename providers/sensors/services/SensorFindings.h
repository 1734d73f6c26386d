#pragma once

#include <vector>

#include "providers/common/Findings.h"
#include "providers/sensors/services/Course.h"

namespace providers::sensors {

/// What is wrong with a sensor, or with what it looks at: the worst of it.
std::vector<Finding> findingsOf(const SensorCourse& course);

/// "98.5 degree C"
std::string valueText(Kind kind, double value);

}  // namespace providers::sensors
