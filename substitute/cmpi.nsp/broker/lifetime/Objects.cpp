#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

#include <mutex>
#include <string>

#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"

namespace cmpinsp::broker {
namespace {

/// Guards the child lists of all objects: several threads may read one clone.
std::mutex& childrenMutex() {
  static auto* const mutex = new std::mutex;
  return *mutex;
}

Handle& revive(Kind kind, Ownership ownership, Broker* broker, std::unique_ptr<Body> body) {
  Handle& handle = threadState().handles.take(kind);
  handle.ownership = ownership;
  handle.broker = broker;
  handle.scope = nullptr;
  handle.previous = nullptr;
  handle.next = nullptr;
  handle.hdl = body->shownTo(handle);
  handle.body = body.release();
  handle.alive.store(true, std::memory_order_release);
  return handle;
}

/// Whether what belongs to `parent` may as well belong to its scope.
Scope* scopeForChildrenOf(const Handle& parent) {
  Scope* innermost = threadState().innermost;
  return parent.scope == innermost ? innermost : nullptr;
}

void attach(Handle& parent, Handle& child) noexcept {
  child.next = parent.body->children;
  parent.body->children = &child;
}

Handle* findChild(const Handle& parent, Kind kind, const Body& made,
                  bool (*isSame)(const Body&, const Body&) noexcept) noexcept {
  for (Handle* child = parent.body->children; child != nullptr; child = child->next) {
    if (child->kind == kind && isSame(*child->body, made)) return child;
  }
  return nullptr;
}

}  // namespace

Handle& makeObject(Kind kind, Ownership ownership, Broker* broker, std::unique_ptr<Body> body) {
  Scope* scope = ownership == Ownership::kCloned ? nullptr : &innermostScope();
  Handle& handle = revive(kind, ownership, broker, std::move(body));
  if (scope != nullptr) scope->add(handle);
  return handle;
}

Handle& makeChild(Handle& parent, Kind kind, std::unique_ptr<Body> body) {
  Scope* scope = scopeForChildrenOf(parent);
  Handle& child = revive(kind, Ownership::kChild, parent.broker, std::move(body));
  if (scope != nullptr) {
    scope->add(child);
  } else {
    const std::lock_guard<std::mutex> lock(childrenMutex());
    attach(parent, child);
  }
  return child;
}

Handle& makeChildOnce(Handle& parent, Kind kind, std::unique_ptr<Body> body,
                      bool (*isSame)(const Body& old, const Body& made) noexcept) {
  if (scopeForChildrenOf(parent) != nullptr) return makeChild(parent, kind, std::move(body));
  const std::lock_guard<std::mutex> lock(childrenMutex());
  if (Handle* known = findChild(parent, kind, *body, isSame)) return *known;
  Handle& child = revive(kind, Ownership::kChild, parent.broker, std::move(body));
  attach(parent, child);
  return child;
}

bool destroy(Handle& handle) noexcept {
  if (!handle.alive.exchange(false, std::memory_order_acq_rel)) return false;
  const std::unique_ptr<Body> body(handle.body);
  handle.body = nullptr;
  handle.hdl = nullptr;
  while (body != nullptr && body->children != nullptr) {
    Handle& child = *body->children;
    body->children = child.next;
    destroy(child);
  }
  threadState().handles.put(handle);
  return true;
}

Handle& handleOf(const void* object, Kind kind) {
  Handle* handle = findLive(object);
  if (handle != nullptr && handle->kind == kind) return *handle;
  std::string text = object == nullptr ? "a null handle" : "no live object";
  if (handle != nullptr) text = std::string("a ") + nameOf(handle->kind);
  throw Failure(CMPI_RC_ERR_INVALID_HANDLE, text + " where a " + nameOf(kind) + " is needed");
}

}  // namespace cmpinsp::broker
