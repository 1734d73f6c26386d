#pragma once

#include <functional>

#include "providers/processor/services/CalculationDiagnostic.h"
#include "providers/processor/status/Health.h"

namespace providers {

/// Reads what the system knows of a package.
class StatusDiagnostic : public Diagnostic {
 public:
  using Reader = std::function<Health(const std::vector<unsigned>& cpus)>;

  /// The machine outlives the diagnostic.
  StatusDiagnostic(const ProcessorMachine& machine, Reader read);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override { return m_machine.devices(); }
  std::string refuse(const RunSettings&) const override { return {}; }
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  const ProcessorMachine& m_machine;
  const Reader m_read;
  const DiagnosticDescription m_description;
};

}  // namespace providers
