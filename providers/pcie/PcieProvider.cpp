#include <chrono>
#include <thread>

#include "providers/common/ProviderLibrary.h"
#include "providers/common/RunSources.h"
#include "providers/common/SharedReading.h"
#include "providers/pcie/finding/SysfsLinks.h"
#include "providers/pcie/services/PcieDiagnostic.h"

namespace providers {

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  const std::string sys = "/sys";
  const auto any =
      std::make_shared<SharedReading<bool>>([sys] { return pcie::hasLinks(sys); }, steadySeconds);
  pcie::PcieSurroundings surroundings;
  surroundings.sys = sys;
  surroundings.nameFiles = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids",
                            "/usr/share/pci.ids"};
  surroundings.hasLinks = [any] { return any->get(); };
  surroundings.clock = steadySeconds;
  surroundings.sleep = [](double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  };
  surroundings.readConfiguration = [sys](const std::string& address) {
    return pcie::readConfiguration(sys, address);
  };
  surroundings.startLoad = pcie::startDiskLoad;
  std::vector<std::unique_ptr<Diagnostic>> all;
  all.push_back(std::make_unique<pcie::PcieDiagnostic>(std::move(surroundings)));
  return all;
}

}  // namespace providers
