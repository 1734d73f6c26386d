#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/pcie/load/DiskLoad.h"
#include "providers/pcie/services/LinkWatch.h"

namespace providers::pcie {

/// What the test stands on.
struct PcieSurroundings {
  std::string sys;                     ///< "/sys"
  std::vector<std::string> nameFiles;  ///< where `pci.ids` may be
  std::function<bool()> hasLinks;
  std::function<double()> clock;  ///< seconds from any beginning
  std::function<void(double seconds)> sleep;
  /// The beginning of a device's configuration, asked for over its link.
  std::function<std::string(const std::string& address)> readConfiguration;
  StartLoad startLoad;
};

/// Watches all links for so many seconds at rest, and for as many under load. Without links nothing
/// is watched.
LinkWatch watchLinks(const PcieSurroundings& surroundings, double seconds, RunControl& control);

}  // namespace providers::pcie
