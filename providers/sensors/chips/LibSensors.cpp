#include <sensors/error.h>
#include <sensors/sensors.h>

#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "providers/sensors/chips/Module.h"

// The module that is linked with libsensors. Its names of values are those of the system's files:
// "temp1_crit".

namespace {

using providers::sensors::Kind;
using providers::sensors::Sensor;

const Kind* kindOf(sensors_feature_type type) {
  static const std::map<int, Kind> kinds{
      {SENSORS_FEATURE_IN, Kind::Voltage},       {SENSORS_FEATURE_FAN, Kind::Fan},
      {SENSORS_FEATURE_TEMP, Kind::Temperature}, {SENSORS_FEATURE_POWER, Kind::Power},
      {SENSORS_FEATURE_CURR, Kind::Current},     {SENSORS_FEATURE_HUMIDITY, Kind::Humidity}};
  const auto found = kinds.find(type);
  return found == kinds.end() ? nullptr : &found->second;
}

std::string chipName(const sensors_chip_name& chip) {
  std::array<char, 256> text{};
  const int length = sensors_snprintf_chip_name(text.data(), text.size(), &chip);
  return length > 0 ? text.data() : chip.prefix;
}

std::string labelOf(const sensors_chip_name& chip, const sensors_feature& feature) {
  const std::unique_ptr<char, decltype(&std::free)> label(sensors_get_label(&chip, &feature),
                                                          &std::free);
  return label ? label.get() : feature.name;
}

/// The numbers of the values that can be read, by their names.
std::map<std::string, int> valuesOf(const sensors_chip_name& chip, const sensors_feature& feature) {
  std::map<std::string, int> numbers;
  int next = 0;
  while (const sensors_subfeature* one = sensors_get_all_subfeatures(&chip, &feature, &next))
    if ((one->flags & SENSORS_MODE_R) != 0) numbers[one->name] = one->number;
  return numbers;
}

void addSensor(const sensors_chip_name& chip, const sensors_feature& feature,
               std::vector<Sensor>& sensors) {
  const Kind* const kind = kindOf(feature.type);
  const std::map<std::string, int> numbers = valuesOf(chip, feature);
  const std::string name = feature.name;
  if (!kind || numbers.count(name + "_input") == 0) return;
  Sensor sensor;
  sensor.chip = chipName(chip);
  sensor.label = labelOf(chip, feature);
  sensor.kind = *kind;
  fill(sensor, [&](const char* end) -> std::optional<double> {
    const auto number = numbers.find(name + end);
    double value = 0;
    if (number == numbers.end() || sensors_get_value(&chip, number->second, &value) != 0)
      return std::nullopt;
    return value;
  });
  sensors.push_back(std::move(sensor));
}

/// It says nothing on a terminal that is not its own: a line of the settings that it cannot read is
/// passed over.
bool begin() {
  sensors_parse_error = [](const char*, int) {};
  sensors_parse_error_wfn = [](const char*, const char*, int) {};
  return sensors_init(nullptr) == 0;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void DIAGS_SENSOR_CHIPS_FUNCTION(
    std::vector<Sensor>* sensors) {
  static const bool ready = begin();
  if (!ready) return;
  int nextChip = 0;
  while (const sensors_chip_name* chip = sensors_get_detected_chips(nullptr, &nextChip)) {
    int nextFeature = 0;
    while (const sensors_feature* feature = sensors_get_features(chip, &nextFeature))
      addSensor(*chip, *feature, *sensors);
  }
}
