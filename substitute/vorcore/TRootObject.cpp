#include "framework/TRootObject.h"

#include "substitute/vorcore/ConfigurationState.h"

namespace NZELVOR20 {

ILogger* TRootObject::GetCoreLogger() { return vorcore::currentLogger(); }

}  // namespace NZELVOR20
