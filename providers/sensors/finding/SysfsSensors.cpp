#include "providers/sensors/finding/SysfsSensors.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <set>
#include <system_error>

#include "providers/common/SysfsFiles.h"

namespace providers::sensors {

namespace {

namespace fs = std::filesystem;

struct KindFiles {
  const char* prefix;  ///< "temp" of "temp1_input"
  Kind kind;
  double unit;  ///< what a file's number is divided by
};

constexpr std::array<KindFiles, 6> kKinds{{{"temp", Kind::Temperature, 1000},
                                           {"fan", Kind::Fan, 1},
                                           {"in", Kind::Voltage, 1000},
                                           {"curr", Kind::Current, 1000},
                                           {"power", Kind::Power, 1e6},
                                           {"humidity", Kind::Humidity, 1000}}};

/// A number that may be negative, alone in its file.
std::optional<double> readValue(const fs::path& file, double unit) {
  const std::string text = readLine(file);
  long long number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (text.empty() || error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return static_cast<double>(number) / unit;
}

/// "temp12" of "temp12_input"; empty when the file is none.
std::string inputOf(const std::string& name, const KindFiles& kind) {
  static const std::string kEnd = "_input";
  const std::string prefix = kind.prefix;
  if (name.size() <= prefix.size() + kEnd.size()) return {};
  const std::size_t length = name.size() - kEnd.size();
  const std::string number = name.substr(prefix.size(), length - prefix.size());
  const bool right = name.compare(0, prefix.size(), prefix) == 0 &&
                     name.compare(length, kEnd.size(), kEnd) == 0 &&
                     number.find_first_not_of("0123456789") == std::string::npos;
  return right ? name.substr(0, length) : std::string();
}

/// The chip's name, and the device that it belongs to, since there may be several of a kind.
std::string chipName(const fs::path& chip) {
  std::error_code ignored;
  const std::string name = readLine(chip / "name");
  const std::string device = printable(fs::canonical(chip / "device", ignored).filename().string());
  const std::string known = name.empty() ? printable(chip.filename().string()) : name;
  return device.empty() ? known : known + " (" + device + ")";
}

Sensor readSensor(const fs::path& chip, const std::string& chipText, const std::string& input,
                  const KindFiles& kind) {
  const auto at = [&](const char* end) { return chip / (input + end); };
  Sensor sensor;
  sensor.chip = chipText;
  sensor.label = readLine(at("_label"));
  if (sensor.label.empty()) sensor.label = input;
  sensor.kind = kind.kind;
  fill(sensor, [&](const char* end) {
    const std::string name = end;
    const bool flag = name.find("alarm") != std::string::npos || name == "_fault";
    return readValue(at(end), flag ? 1 : kind.unit);
  });
  return sensor;
}

/// temp2 before temp10.
bool numberedBefore(const std::string& left, const std::string& right) {
  return left.size() == right.size() ? left < right : left.size() < right.size();
}

void addChip(const fs::path& chip, std::vector<Sensor>& sensors) {
  const std::vector<fs::path> files = childrenOf(chip);
  const std::string name = chipName(chip);
  for (const KindFiles& kind : kKinds) {
    std::vector<std::string> inputs;
    for (const fs::path& file : files) {
      const std::string input = inputOf(file.filename().string(), kind);
      // What somebody has switched off shows nothing.
      if (input.empty() || readLine(chip / (input + "_enable")) == "0") continue;
      inputs.push_back(input);
    }
    std::sort(inputs.begin(), inputs.end(), numberedBefore);
    for (const std::string& input : inputs) sensors.push_back(readSensor(chip, name, input, kind));
  }
}

/// Old drivers have their files in the device's folder.
fs::path folderOf(const fs::path& chip) {
  std::error_code ignored;
  const bool old = !fs::exists(chip / "name", ignored) && fs::exists(chip / "device/name", ignored);
  return old ? chip / "device" : chip;
}

bool hasInputs(const fs::path& chip) {
  const std::vector<fs::path> files = childrenOf(chip);
  return std::any_of(files.begin(), files.end(), [](const fs::path& file) {
    return std::any_of(kKinds.begin(), kKinds.end(), [&file](const KindFiles& kind) {
      return !inputOf(file.filename().string(), kind).empty();
    });
  });
}

/// A zone's limits are among its trip points: "hot" and "critical". At "passive" and "active" ones
/// the machine only begins to do something about it.
void readTrips(const fs::path& zone, Sensor& sensor) {
  constexpr double kUnit = 1000;
  constexpr int kMost = 32;
  for (int i = 0; i < kMost; ++i) {
    const std::string trip = "trip_point_" + std::to_string(i);
    const std::string type = readLine(zone / (trip + "_type"));
    if (type.empty()) return;
    const auto limit = readValue(zone / (trip + "_temp"), kUnit);
    if (type == "hot") sensor.limits.high = limit;
    if (type == "critical") sensor.limits.highCritical = limit;
  }
}

std::vector<fs::path> zonesOf(const std::string& sys) {
  std::vector<fs::path> zones;
  for (const fs::path& zone : childrenOf(fs::path(sys) / "class/thermal"))
    if (zone.filename().string().compare(0, 12, "thermal_zone") == 0) zones.push_back(zone);
  return zones;
}

}  // namespace

bool hasSensors(const std::string& sys) {
  const auto chips = childrenOf(fs::path(sys) / "class/hwmon");
  const bool any = std::any_of(chips.begin(), chips.end(),
                               [](const fs::path& chip) { return hasInputs(folderOf(chip)); });
  return any || !zonesOf(sys).empty();
}

std::vector<Sensor> readChips(const std::string& sys) {
  std::vector<Sensor> sensors;
  for (const fs::path& chip : childrenOf(fs::path(sys) / "class/hwmon"))
    addChip(folderOf(chip), sensors);
  return sensors;
}

std::vector<Sensor> readZones(const std::string& sys) {
  constexpr double kUnit = 1000;
  std::set<std::string> chips;
  for (const fs::path& chip : childrenOf(fs::path(sys) / "class/hwmon"))
    chips.insert(readLine(chip / "name"));
  std::vector<Sensor> sensors;
  for (const fs::path& zone : zonesOf(sys)) {
    Sensor sensor;
    sensor.label = readLine(zone / "type");
    // The system makes a chip of a zone, whose name has '_' where the zone's has '-'.
    std::string chip = sensor.label;
    std::replace(chip.begin(), chip.end(), '-', '_');
    if (chips.count(chip) != 0) continue;
    sensor.chip = printable(zone.filename().string());
    if (sensor.label.empty()) sensor.label = "temperature";
    sensor.value = readValue(zone / "temp", kUnit);
    readTrips(zone, sensor);
    dropNonsense(sensor);
    sensors.push_back(std::move(sensor));
  }
  return sensors;
}

}  // namespace providers::sensors
