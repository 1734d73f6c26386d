#pragma once

#include <string>

#include "framework/Export.h"
#include "framework/ICIMInstance.h"

namespace NZELVOR20 {

/// An instance that a CMPI provider serves: the one kind on which methods can be invoked.
class NZELVOR20_INTERFACE TCMPIInstance : public ICIMInstance {
 public:
  /// Invokes the method `name` on the provider and returns its return value. `parameters` holds
  /// the input parameters before the call and is replaced by the output parameters after it. When
  /// the call throws `TVORException`, the parameters are as they were.
  virtual TCIMValue InvokeMethod(std::string name, TParameterMap& parameters,
                                 TOptionsMap options) = 0;
};

}  // namespace NZELVOR20
