#pragma once

#include <memory>
#include <string>

#include "providers/common/Diagnostic.h"

namespace providers {

/// A diagnostic under a second name, which takes its quick way where nobody asks for the whole one:
/// what a technician runs first. It has the devices and the settings of the other.
class QuickCheck : public Diagnostic {
 public:
  struct Name {
    std::string name;  ///< of the service
    std::string elementName;
  };

  /// The diagnostic has the setting QuickMode, and is used by nobody else.
  QuickCheck(std::unique_ptr<Diagnostic> diagnostic, const Name& name);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override { return m_diagnostic->devices(); }
  std::string refuse(const RunSettings& settings) const override {
    return m_diagnostic->refuse(settings);
  }
  double passSeconds(const RunSettings& settings) const override {
    return m_diagnostic->passSeconds(settings);
  }
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  const std::unique_ptr<Diagnostic> m_diagnostic;
  DiagnosticDescription m_description;
};

}  // namespace providers
