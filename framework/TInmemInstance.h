#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>

#include "framework/Export.h"
#include "framework/ICIMInstance.h"
#include "framework/TCIMValue.h"

namespace vorcore {
class InmemStore;
struct ClassDeclaration;
}  // namespace vorcore

namespace NZELVOR20 {

/// An instance that lives in memory alone. Copies share their values until one of them is written
/// to. A property handle shows the value of the time when it was asked for.
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
  friend class vorcore::InmemStore;

  std::size_t FindProperty(const std::string& name) const;
  /// Gives the instance values of its own, when it shares them.
  void DetachValues();

  boost::shared_ptr<ICIMClass> m_class;
  boost::shared_ptr<const vorcore::ClassDeclaration> m_declaration;
  boost::shared_ptr<TCIMValue[]> m_values;  ///< one per declared property
};

}  // namespace NZELVOR20
