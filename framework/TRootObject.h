#pragma once

#include "framework/Export.h"
#include "framework/ILogger.h"

namespace NZELVOR20 {

/// The root of the framework's own objects.
class VORCORE_API TRootObject {
 public:
  /// The core log; null where there is none. It belongs to the framework and stays valid until a
  /// host configures another one.
  static ILogger* GetCoreLogger();
};

}  // namespace NZELVOR20
