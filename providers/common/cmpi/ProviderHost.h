#pragma once

#include <memory>
#include <vector>

#include "cmpi/cmpi.h"
#include "providers/common/cmpi/CmpiThreads.h"
#include "providers/common/cmpi/Guard.h"
#include "providers/common/model/DiagnosticProvider.h"
#include "providers/common/runs/JobRegistry.h"

namespace providers {

using Diagnostics = std::vector<std::unique_ptr<Diagnostic>>;

/// A family of diagnostics behind the CMPI interface: one a library, which lives as long as the
/// library. Its three interfaces (instance, association, method) share the diagnostics, their jobs
/// and their records.
class ProviderHost {
 public:
  /// `name` is the provider's name; a text that lives as long as the host. The diagnostics are of
  /// one family, with names of their own; throws `std::invalid_argument` otherwise.
  ProviderHost(const char* name, Diagnostics diagnostics);
  ProviderHost(const ProviderHost&) = delete;
  ProviderHost& operator=(const ProviderHost&) = delete;

  // The interfaces, of which a broker has asked for the first or another one.
  CMPIInstanceMI* instanceMI(const CMPIBroker* broker);
  CMPIAssociationMI* associationMI(const CMPIBroker* broker);
  CMPIMethodMI* methodMI(const CMPIBroker* broker);

  const CMPIBroker* broker() const noexcept { return m_broker; }
  DiagnosticProvider& provider() noexcept { return m_provider; }
  CmpiThreads& threads() noexcept { return m_threads; }

  /// Ends all runs, waits for their threads, and forgets jobs and records. Unless the broker is
  /// going down, a host with a run under way stays as it is and says so.
  CMPIStatus cleanUp(bool terminating);

 private:
  const CMPIBroker* m_broker = nullptr;
  const Diagnostics m_diagnostics;
  DiagnosticFamily m_family;
  JobRegistry m_registry;
  DiagnosticProvider m_provider;
  CmpiThreads m_threads;
  CMPIInstanceMIFT m_instanceTable;
  CMPIAssociationMIFT m_associationTable;
  CMPIMethodMIFT m_methodTable;
  CMPIInstanceMI m_instance;
  CMPIAssociationMI m_association;
  CMPIMethodMI m_method;
};

/// The work of a factory function: an interface of the host, or NULL and a status that says why.
/// The status may be NULL.
template <class Mi>
Mi* createMI(ProviderHost& (*host)(), Mi* (ProviderHost::*choose)(const CMPIBroker*),
             const CMPIBroker* broker, CMPIStatus* status) noexcept {
  Mi* mi = nullptr;
  const CMPIStatus result = guarded(broker, [&] {
    mi = (host().*choose)(broker);
    return CMPIStatus{CMPI_RC_OK, nullptr};
  });
  if (status) *status = result;
  return mi;
}

}  // namespace providers
