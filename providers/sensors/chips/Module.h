#pragma once

#include <vector>

#include "providers/sensors/finding/Sensor.h"

// What the module that is linked with libsensors exports.

#define DIAGS_SENSOR_CHIPS "diagsSensorChips"

extern "C" {

/// Adds all sensors that libsensors knows, as they are now. For one thread at a time.
using DiagsSensorChips = void (*)(std::vector<providers::sensors::Sensor>* sensors);
}
