#pragma once

#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/pcie/services/Course.h"

namespace providers::pcie {

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
