#pragma once

#include <functional>
#include <string>

#include "cmpi/cmpi.h"
#include "providers/common/cmpi/CmpiValues.h"
#include "providers/common/cmpi/ProviderHost.h"
#include "providers/common/model/DiagnosticProvider.h"

namespace providers {

/// One call from the broker: what it is about and what the broker does for it.
class BrokerCall : public CallServices {
 public:
  BrokerCall(ProviderHost& host, const CMPIContext* context, const CMPIObjectPath* path)
      : m_host(host),
        m_context(context),
        m_values(host.broker(), textOf(path->ft->getNameSpace(path, nullptr))),
        m_path(m_values.readPath(path)) {}

  const CmpiValues& values() const noexcept { return m_values; }
  const ObjectPath& path() const noexcept { return m_path; }

  bool isA(const std::string& className, const std::string& ancestor) override;
  bool launch(std::function<void()> work) override;
  void remark(const std::string& text) override;

  /// Replaces each argument that refers to an instance of settings by that instance.
  void fetchSettings(Properties& arguments) const;

 private:
  ProviderHost& m_host;
  const CMPIContext* m_context;
  CmpiValues m_values;
  ObjectPath m_path;
};

}  // namespace providers
