#pragma once

#include <deque>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/common/runs/DefaultSettings.h"

namespace providers {

/// A diagnostic as it is offered: with what its runs do where nobody asks for anything else.
class Service {
 public:
  /// The diagnostic outlives the service.
  explicit Service(Diagnostic& diagnostic) : m_diagnostic(diagnostic), m_defaults(diagnostic) {}

  Diagnostic& diagnostic() const noexcept { return m_diagnostic; }
  const DiagnosticDescription& description() const { return m_diagnostic.description(); }
  DefaultSettings& defaults() noexcept { return m_defaults; }
  const DefaultSettings& defaults() const noexcept { return m_defaults; }

 private:
  Diagnostic& m_diagnostic;
  DefaultSettings m_defaults;
};

/// The services of a family, which test the same kind of devices, each under a name of its own.
class DiagnosticFamily {
 public:
  /// The diagnostics, one or more, outlive the family. Throws `std::invalid_argument` when there is
  /// none, when they are of several families, and when two have the same name.
  explicit DiagnosticFamily(const std::vector<Diagnostic*>& diagnostics);

  /// The class of the devices.
  const std::string& name() const { return m_services.front().description().family; }
  std::deque<Service>& services() noexcept { return m_services; }
  const std::deque<Service>& services() const noexcept { return m_services; }

  /// The service of this name, or null.
  Service* find(const std::string& serviceName);
  const Service* find(const std::string& serviceName) const;

  /// The devices of all services, each once, as the first service that has it shows it.
  std::vector<Device> devices() const;

  /// Gives every service the settings that it had at the beginning.
  void reset();

 private:
  std::deque<Service> m_services;
};

}  // namespace providers
