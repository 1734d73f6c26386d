#pragma once

#include <memory>

#include "substitute/cmpi.nsp/broker/lifetime/Handle.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"

/// Making, finding and ending the objects that providers hold. A body type names its C object as
/// `Object` and its kind as `kKind`.
namespace cmpinsp::broker {

/// A new object of the innermost scope, or a clone, which belongs to nobody here.
Handle& makeObject(Kind kind, Ownership ownership, Broker* broker, std::unique_ptr<Body> body);

/// A new object that lives as long as `parent`.
Handle& makeChild(Handle& parent, Kind kind, std::unique_ptr<Body> body);

/// The child string of `parent` with this text: an old one where `parent` outlives the call, so
/// that polling a long-lived object does not make it grow.
Handle& makeChildString(Handle& parent, const char* text, std::size_t length);

/// Ends an object that no list holds any more, and its children. False when it had ended already.
bool destroy(Handle& handle) noexcept;

/// What `release` does: ends a clone, and an object of the calling thread's own scopes; leaves the
/// others to whom they belong to.
CMPIStatus releaseObject(const void* object, Kind kind) noexcept;

/// Takes a clone of a context away from the provider, whose `release` leaves it alone from now on.
/// It belongs to all the threads that are attached with it. False for the context of a call, which
/// ends with that.
bool addAttached(Handle& context) noexcept;
/// Takes one of these threads off; the last one ends the context.
void removeAttached(Handle& context) noexcept;

/// The live object of `kind` at `object`. Throws `Failure` (invalid handle).
Handle& handleOf(const void* object, Kind kind);

template <typename BodyType>
BodyType& bodyOf(const Handle& handle) noexcept {
  return static_cast<BodyType&>(*handle.body);
}

template <typename BodyType>
BodyType& bodyOf(const typename BodyType::Object* object) {
  return bodyOf<BodyType>(handleOf(object, BodyType::kKind));
}

template <typename BodyType>
typename BodyType::Object* objectOf(Handle& handle) noexcept {
  return reinterpret_cast<typename BodyType::Object*>(&handle);
}

template <typename BodyType>
typename BodyType::Object* makeObject(Ownership ownership, Broker* broker,
                                      std::unique_ptr<BodyType> body) {
  return objectOf<BodyType>(makeObject(BodyType::kKind, ownership, broker, std::move(body)));
}

template <typename BodyType>
typename BodyType::Object* makeChild(Handle& parent, std::unique_ptr<BodyType> body) {
  return objectOf<BodyType>(makeChild(parent, BodyType::kKind, std::move(body)));
}

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
