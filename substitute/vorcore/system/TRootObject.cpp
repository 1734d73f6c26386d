#include "framework/TRootObject.h"

#include "substitute/vorcore/system/ConfigurationState.h"

namespace NZELVOR20 {

ILogger* TRootObject::GetCoreLogger() { return vorcore::currentLogger(); }

}  // namespace NZELVOR20
