#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/Export.h"
#include "framework/Options.h"

namespace NZELVOR20 {

class ICIMNamespace;

/// One source of classes and instances behind a namespace: a CMPI provider, or the namespace's own
/// store.
class NZELVOR20_INTERFACE INamespaceProvider {
 public:
  virtual ~INamespaceProvider() = default;

  /// The provider's name, for display.
  virtual std::string GetName() const = 0;

  /// The namespace through which this provider's classes are reached. Throws `TVORException` where
  /// the provider cannot be used.
  virtual boost::shared_ptr<ICIMNamespace> GetNamespace(TOptionsMap options) = 0;
};

}  // namespace NZELVOR20
