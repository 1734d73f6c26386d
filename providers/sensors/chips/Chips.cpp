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
  const std::string name = "diagsSensorsChips";
  const LocalModule module = loadLocalModule(folder, name);
  std::string why = module.problem;
  if (module.handle) {
    const auto read = reinterpret_cast<DiagsSensorChips>(dlsym(module.handle, DIAGS_SENSOR_CHIPS));
    if (read && !readWith(read).empty())
      return {[read] { return readWith(read); }, "libsensors, as it is set up on this machine"};
    why = read ? "libsensors knows no chip"
               : "lib" + name + ".so is not used: it is of another version than the test, for it " +
                     "has no " DIAGS_SENSOR_CHIPS;
  }
  return {[sys] { return readChips(sys); }, "the system's files, since " + printable(why)};
}

}  // namespace providers::sensors
