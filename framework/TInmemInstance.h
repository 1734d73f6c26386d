#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>
#include <vector>

#include "framework/Export.h"
#include "framework/ICIMInstance.h"

namespace NZELVOR20 {

/// An instance that lives in memory alone.
class VORCORE_API TInmemInstance : public ICIMInstance {
 public:
  /// An instance of `instanceClass` with the declared defaults. The class is held by the instance;
  /// the namespace behind it is not.
  explicit TInmemInstance(boost::shared_ptr<ICIMClass> instanceClass);
  ~TInmemInstance() override;

  TCIMReference GetObjectPath(TOptionsMap options) override;
  boost::shared_ptr<ICIMProperty> GetProperty(std::string name, TOptionsMap options) override;
  void SetProperty(std::string name, TCIMValue value, TOptionsMap options) override;
  std::string GetPegasusNSPStr() override { return std::string(); }
  boost::shared_ptr<ICIMClass> GetClass(TOptionsMap options) override;
  void EnumerateProperties(TPropertyCallback callback, TOptionsMap options) override;

 private:
  boost::shared_ptr<ICIMProperty> FindProperty(const std::string& name) const;

  boost::shared_ptr<ICIMClass> m_class;
  std::vector<boost::shared_ptr<ICIMProperty>> m_properties;
};

}  // namespace NZELVOR20
