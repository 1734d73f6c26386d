#pragma once

#include <memory>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"

/// What every object's function table starts with.
namespace cmpinsp::broker {

/// What `release` does: ends a clone, and an object of the calling thread's own scopes; leaves the
/// others to whom they belong to.
CMPIStatus releaseObject(const void* object, Kind kind) noexcept;

/// A function table's `release`.
template <typename BodyType>
CMPIStatus release(typename BodyType::Object* object) noexcept {
  return releaseObject(object, BodyType::kKind);
}

/// A function table's `clone`, for bodies that can be made from another one.
template <typename BodyType>
typename BodyType::Object* clone(const typename BodyType::Object* object,
                                 CMPIStatus* status) noexcept {
  using Object = typename BodyType::Object;
  return answer(status, static_cast<Object*>(nullptr), [&] {
    const Handle& handle = handleOf(object, BodyType::kKind);
    return makeObject(Ownership::kCloned, handle.broker,
                      std::make_unique<BodyType>(bodyOf<BodyType>(handle)));
  });
}

}  // namespace cmpinsp::broker
