#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

#include <cstring>
#include <mutex>

#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"
#include "substitute/cmpi.nsp/broker/objects/ContextObject.h"
#include "substitute/cmpi.nsp/broker/objects/StringObject.h"

namespace cmpinsp::broker {
namespace {

/// Guards the child lists of all objects: several threads may read one clone.
std::mutex& childrenMutex() {
  static auto* const mutex = new std::mutex;
  return *mutex;
}

/// Guards whose a context is. Providers start several threads with one and release it meanwhile,
/// and it must go to one owner alone.
std::mutex& contextMutex() {
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
  handle.hdl = &handle;
  if (kind == Kind::kString) handle.hdl = static_cast<StringBody&>(*body).text();
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

Handle* findChildString(const Handle& parent, const char* text, std::size_t length) noexcept {
  for (Handle* child = parent.body->children; child != nullptr; child = child->next) {
    if (child->kind != Kind::kString) continue;
    const StringBody& string = bodyOf<StringBody>(*child);
    if (string.length() == length && std::memcmp(string.text(), text, length) == 0) return child;
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

Handle& makeChildString(Handle& parent, const char* text, std::size_t length) {
  auto body = std::make_unique<StringBody>(std::string(text, length));
  if (scopeForChildrenOf(parent) != nullptr) {
    return makeChild(parent, Kind::kString, std::move(body));
  }
  const std::lock_guard<std::mutex> lock(childrenMutex());
  if (Handle* known = findChildString(parent, text, length)) return *known;
  Handle& child = revive(Kind::kString, Ownership::kChild, parent.broker, std::move(body));
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

CMPIStatus releaseObject(const void* object, Kind kind) noexcept {
  return perform([&] {
    std::unique_lock<std::mutex> lock;
    if (kind == Kind::kContext) lock = std::unique_lock<std::mutex>(contextMutex());
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

bool addAttached(Handle& context) noexcept {
  const std::lock_guard<std::mutex> lock(contextMutex());
  if (!context.alive.load()) return false;
  int& attached = bodyOf<ContextBody>(context).attachedThreads;
  if (attached == 0 && context.ownership != Ownership::kCloned) return false;
  context.ownership = Ownership::kBorrowed;
  ++attached;
  return true;
}

void removeAttached(Handle& context) noexcept {
  const std::lock_guard<std::mutex> lock(contextMutex());
  if (--bodyOf<ContextBody>(context).attachedThreads == 0) destroy(context);
}

Handle& handleOf(const void* object, Kind kind) {
  Handle* handle = findLive(object);
  if (handle != nullptr && handle->kind == kind) return *handle;
  std::string text = object == nullptr ? "a null handle" : "no live object";
  if (handle != nullptr) text = std::string("a ") + nameOf(handle->kind);
  throw Failure(CMPI_RC_ERR_INVALID_HANDLE, text + " where a " + nameOf(kind) + " is needed");
}

}  // namespace cmpinsp::broker
