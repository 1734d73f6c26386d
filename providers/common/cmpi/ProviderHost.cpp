#include "providers/common/cmpi/ProviderHost.h"

#include "providers/common/cmpi/HostEntries.h"
#include "providers/common/model/SystemName.h"

namespace providers {

namespace {

std::vector<Diagnostic*> borrowed(const Diagnostics& diagnostics) {
  std::vector<Diagnostic*> all;
  for (const auto& diagnostic : diagnostics) all.push_back(diagnostic.get());
  return all;
}

}  // namespace

ProviderHost::ProviderHost(const char* name, Diagnostics diagnostics)
    : m_diagnostics(std::move(diagnostics)),
      m_family(borrowed(m_diagnostics)),
      m_registry(systemClock, makeJobId),
      m_provider(m_family, m_registry, systemName()),
      m_instanceTable(makeInstanceTable(name)),
      m_associationTable(makeAssociationTable(name)),
      m_methodTable(makeMethodTable(name)),
      m_instance{this, &m_instanceTable},
      m_association{this, &m_associationTable},
      m_method{this, &m_methodTable} {}

CMPIInstanceMI* ProviderHost::instanceMI(const CMPIBroker* broker) {
  m_broker = broker;
  return &m_instance;
}

CMPIAssociationMI* ProviderHost::associationMI(const CMPIBroker* broker) {
  m_broker = broker;
  return &m_association;
}

CMPIMethodMI* ProviderHost::methodMI(const CMPIBroker* broker) {
  m_broker = broker;
  return &m_method;
}

CMPIStatus ProviderHost::cleanUp(bool terminating) {
  if (!terminating && m_registry.anyRunning()) return {CMPI_RC_DO_NOT_UNLOAD, nullptr};
  m_registry.stopAll();
  m_threads.joinAll();
  m_registry.clear();
  m_provider.reset();
  return {CMPI_RC_OK, nullptr};
}

}  // namespace providers
