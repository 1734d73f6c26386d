#pragma once

#include "providers/common/Diagnostic.h"
#include "providers/memory/services/Surroundings.h"

namespace providers::memory {

/// Asks firmware and memory controllers how the modules are; touches no memory.
class StatusDiagnostic : public Diagnostic {
 public:
  explicit StatusDiagnostic(const Surroundings& surroundings);

  const DiagnosticDescription& description() const override { return m_description; }
  /// None where there is nobody to ask.
  std::vector<Device> devices() const override;
  std::string refuse(const RunSettings&) const override { return {}; }
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  const Surroundings m_surroundings;
  const DiagnosticDescription m_description;
};

}  // namespace providers::memory
