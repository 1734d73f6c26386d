#include "providers/sensors/chips/Chips.h"

#include <dlfcn.h>

#include <utility>

#include "providers/common/LocalModule.h"
#include "providers/common/SysfsFiles.h"
#include "providers/sensors/chips/Module.h"
#include "providers/sensors/finding/SysfsSensors.h"

namespace providers::sensors {

namespace {

std::vector<Sensor> readWith(DiagsSensorChips read) {
  std::vector<Sensor> sensors;
  read(&sensors);
  for (Sensor& sensor : sensors) {
    sensor.chip = printable(sensor.chip);
    sensor.label = printable(sensor.label);
  }
  return sensors;
}

}  // namespace

ChipReader openChips(const std::string& folder, const std::string& sys) {
  const LocalModule module = loadLocalModule(folder, "diagsSensorsChips");
  const auto read =
      module.handle ? reinterpret_cast<DiagsSensorChips>(dlsym(module.handle, DIAGS_SENSOR_CHIPS))
                    : nullptr;
  if (read && !readWith(read).empty())
    return {[read] { return readWith(read); }, "libsensors, as it is set up on this machine"};
  return {[sys] { return readChips(sys); }, "the system's files"};
}

}  // namespace providers::sensors
