#include "providers/common/cmpi/BrokerCall.h"

namespace providers {

bool BrokerCall::isA(const std::string& className, const std::string& ancestor) {
  const CMPIBroker* broker = m_host.broker();
  const CMPIObjectPath* path = m_values.makePath({className, {}});
  CMPIStatus status{CMPI_RC_OK, nullptr};
  return broker->eft->classPathIsA(broker, path, ancestor.c_str(), &status) != 0;
}

bool BrokerCall::launch(std::function<void()> work) {
  return m_host.threads().launch(m_host.broker(), m_context, std::move(work));
}

/// A log is no reason to fail.
void BrokerCall::remark(const std::string& text) {
  const CMPIBroker* broker = m_host.broker();
  if (broker->eft->logMessage)
    broker->eft->logMessage(broker, CMPI_SEV_WARNING, "DIAGS2", text.c_str(), nullptr);
}

void BrokerCall::fetchSettings(Properties& arguments) const {
  const CMPIBroker* broker = m_host.broker();
  for (const char* name : {"DiagSetting", "JobSetting"}) {
    const auto* path = std::get_if<PathPtr>(&arguments.get(name));
    if (!path || !*path) continue;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIInstance* instance =
        broker->bft->getInstance(broker, m_context, m_values.makePath(**path), nullptr, &status);
    check(status, "fetching the settings");
    if (!instance) throw ProviderError(kErrorNotFound, "the settings are not there");
    arguments.set(name, std::make_shared<const Instance>(m_values.readInstance(instance)));
  }
}

}  // namespace providers
