#pragma once

#include <boost/shared_ptr.hpp>

#include "framework/Export.h"

namespace NZELVOR20 {

class ICIMInstance;
class ICIMNamespace;

/// Copies between namespaces.
class VORCORE_API TCIMCopy {
 public:
  /// Copies `instance` into `target` and returns the copy. A class that `target` does not know is
  /// made there first, with its superclasses and the qualifiers that give values their names; an
  /// instance of the same path is replaced. Throws `TVORException` when a handle is empty or the
  /// namespace takes no instances.
  static boost::shared_ptr<ICIMInstance> CopyInstance(boost::shared_ptr<ICIMInstance> instance,
                                                      boost::shared_ptr<ICIMNamespace> target);
};

}  // namespace NZELVOR20
