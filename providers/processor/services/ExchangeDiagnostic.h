#pragma once

#include "providers/processor/coherency/MessageExchange.h"
#include "providers/processor/services/CalculationDiagnostic.h"

namespace providers {

/// Lets the threads of a package exchange messages. For packages with two of them at least.
class ExchangeDiagnostic : public Diagnostic {
 public:
  /// Machine and tap outlive the diagnostic.
  ExchangeDiagnostic(const ProcessorMachine& machine, const MessageTap& tap);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override;
  std::string refuse(const RunSettings&) const override { return {}; }
  double passSeconds(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  const ProcessorMachine& m_machine;
  const MessageTap& m_tap;
  const DiagnosticDescription m_description;
};

}  // namespace providers
