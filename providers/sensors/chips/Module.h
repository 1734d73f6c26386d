#pragma once

#include <optional>
#include <string>
#include <vector>

#include "providers/sensors/finding/Sensor.h"

// What the module that is linked with libsensors exports: one function, whose name ends with the
// number of the layout of what it hands over. A module that an older installation left behind has
// another name for it, and is left alone.

#define DIAGS_SENSOR_CHIPS_FUNCTION diagsSensorChips2
#define DIAGS_SENSOR_CHIPS "diagsSensorChips2"

static_assert(sizeof(providers::sensors::Limits) == 4 * sizeof(std::optional<double>) &&
                  sizeof(providers::sensors::Sensor) ==
                      2 * sizeof(std::string) + sizeof(double) + sizeof(std::optional<double>) +
                          sizeof(providers::sensors::Limits) + sizeof(double),
              "another layout of a sensor: raise the number");

extern "C" {

/// Adds all sensors that libsensors knows, as they are now. For one thread at a time.
using DiagsSensorChips = void (*)(std::vector<providers::sensors::Sensor>* sensors);
}
