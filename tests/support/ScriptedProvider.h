#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

#include "framework/INamespaceProvider.h"
#include "tests/support/LiveObject.h"

namespace support {

class ScriptedNamespace;

/// A provider that leads to a scripted namespace. Recorded as `provider NAME.GetNamespace({})`.
class ScriptedProvider : public NZELVOR20::INamespaceProvider, public LiveObject {
 public:
  ScriptedProvider(std::string name, boost::weak_ptr<ScriptedNamespace> ns);

  std::string GetName() const override;
  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetNamespace(NZELVOR20::TOptionsMap options) override;

 private:
  std::string m_name;
  boost::weak_ptr<ScriptedNamespace> m_ns;
};

}  // namespace support
