#pragma once

#include <memory>

#include "substitute/cmpi.nsp/broker/lifetime/Failure.h"
#include "substitute/cmpi.nsp/broker/lifetime/Handle.h"

/// Making, finding and ending the objects that providers hold. A body type names its C object as
/// `Object` and its kind as `kKind`.
namespace cmpinsp::broker {

/// A new object of the innermost scope, or a clone, which belongs to nobody here.
Handle& makeObject(Kind kind, Ownership ownership, Broker* broker, std::unique_ptr<Body> body);

/// A new object that lives as long as `parent`.
Handle& makeChild(Handle& parent, Kind kind, std::unique_ptr<Body> body);

/// The same, or an old child whose body `isSame` where `parent` outlives the call, so that polling
/// a long-lived object does not make it grow.
Handle& makeChildOnce(Handle& parent, Kind kind, std::unique_ptr<Body> body,
                      bool (*isSame)(const Body& old, const Body& made) noexcept);

/// Ends an object that no list holds any more, and its children. False when it had ended already.
bool destroy(Handle& handle) noexcept;

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

}  // namespace cmpinsp::broker
