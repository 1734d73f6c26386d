#include <chrono>
#include <thread>

#include "providers/common/LocalModule.h"
#include "providers/common/ProviderLibrary.h"
#include "providers/common/RunSources.h"
#include "providers/common/SharedReading.h"
#include "providers/sensors/chips/Chips.h"
#include "providers/sensors/finding/SysfsSensors.h"
#include "providers/sensors/services/SensorsDiagnostic.h"

namespace providers {

namespace {

const char* const kSys = "/sys";

sensors::OpenedSensors openSensors() {
  const std::string folder = folderOfLibrary(reinterpret_cast<const void*>(&openSensors));
  const sensors::ChipReader chips = sensors::openChips(folder, kSys);
  return {[read = chips.read] {
            std::vector<sensors::Sensor> all = read();
            for (sensors::Sensor& zone : sensors::readZones(kSys)) all.push_back(std::move(zone));
            return all;
          },
          chips.name};
}

}  // namespace

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  const auto any = std::make_shared<SharedReading<bool>>([] { return sensors::hasSensors(kSys); },
                                                         steadySeconds);
  sensors::SensorsSurroundings surroundings;
  surroundings.hasSensors = [any] { return any->get(); };
  surroundings.open = openSensors;
  surroundings.startLoad = [] { return sensors::startProcessorLoad(); };
  surroundings.loadThreads = sensors::processorLoadThreads();
  surroundings.clock = steadySeconds;
  surroundings.sleep = [](double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  };
  std::vector<std::unique_ptr<Diagnostic>> all;
  all.push_back(std::make_unique<sensors::SensorsDiagnostic>(std::move(surroundings)));
  return all;
}

}  // namespace providers
