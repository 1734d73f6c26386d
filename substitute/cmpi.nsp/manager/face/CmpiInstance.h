#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

#include "framework/ICIMNamespace.h"
#include "framework/TCMPIInstance.h"
#include "substitute/cmpi.nsp/model/InstanceData.h"

namespace cmpinsp {

/// An instance that a provider handed out, or that is embedded in one. It holds its namespace
/// weakly: when that is gone, the values can still be read, but no class and no method be reached.
class CmpiInstance final : public NZELVOR20::TCMPIInstance {
 public:
  /// `data` is shared and stays as it is: the first `SetProperty` makes a copy.
  CmpiInstance(InstanceDataPtr data, boost::weak_ptr<NZELVOR20::ICIMNamespace> ns) noexcept
      : m_data(std::move(data)), m_namespace(std::move(ns)) {}

  NZELVOR20::TCIMReference GetObjectPath(NZELVOR20::TOptionsMap options) override;
  /// Throws `TVORException` (no such property) where the instance has none of this name.
  boost::shared_ptr<NZELVOR20::ICIMProperty> GetProperty(std::string name,
                                                         NZELVOR20::TOptionsMap options) override;
  /// Handles of properties that were obtained before keep the value that they had.
  void SetProperty(std::string name, NZELVOR20::TCIMValue value,
                   NZELVOR20::TOptionsMap options) override;
  std::string GetPegasusNSPStr() override { return std::string(); }
  boost::shared_ptr<NZELVOR20::ICIMClass> GetClass(NZELVOR20::TOptionsMap options) override;
  void EnumerateProperties(NZELVOR20::TPropertyCallback callback,
                           NZELVOR20::TOptionsMap options) override;
  NZELVOR20::TCIMValue InvokeMethod(std::string name, NZELVOR20::TParameterMap& parameters,
                                    NZELVOR20::TOptionsMap options) override;

  const InstanceDataPtr& data() const noexcept { return m_data; }

 private:
  boost::shared_ptr<NZELVOR20::ICIMNamespace> requireNamespace() const;

  InstanceDataPtr m_data;
  boost::weak_ptr<NZELVOR20::ICIMNamespace> m_namespace;
};

}  // namespace cmpinsp
