#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/pcie/finding/DeviceNames.h"
#include "providers/pcie/finding/Link.h"

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
};

/// Looks whether all links are as wide and as fast as both their ends can, and whether errors are
/// counted, at rest and while the devices are read.
class PcieDiagnostic : public Diagnostic {
 public:
  explicit PcieDiagnostic(PcieSurroundings surroundings);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override;
  std::string refuse(const RunSettings& settings) const override;
  double passSeconds(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  const PcieSurroundings m_surroundings;
  const DiagnosticDescription m_description;
};

}  // namespace providers::pcie
