#include "substitute/cmpi.nsp/broker/objects/Release.h"

#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"

namespace cmpinsp::broker {

CMPIStatus releaseObject(const void* object, Kind kind) noexcept {
  return perform([&] {
    Handle& handle = handleOf(object, kind);
    if (handle.ownership == Ownership::kCloned) {
      if (!destroy(handle)) throw Failure(CMPI_RC_ERR_INVALID_HANDLE, "released twice");
    } else if (handle.ownership == Ownership::kScoped && handle.scope != nullptr &&
               handle.scope->isOf(threadState())) {
      handle.scope->remove(handle);
      destroy(handle);
    }
  });
}

}  // namespace cmpinsp::broker
