#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"

namespace cmpinsp::broker {

Scope::Scope(Reason reason, Broker* broker)
    : m_thread(&threadState()), m_broker(broker), m_outer(m_thread->innermost), m_reason(reason) {
  m_thread->innermost = this;
}

Scope::~Scope() {
  // What a provider left open within this scope was made on the heap.
  while (m_thread->innermost != this) delete m_thread->innermost;
  while (m_first != nullptr) {
    Handle& handle = *m_first;
    m_first = handle.next;
    if (m_first != nullptr) m_first->previous = nullptr;
    handle.scope = nullptr;
    destroy(handle);
  }
  m_thread->innermost = m_outer;
  if (letContextGo != nullptr) letContextGo(*attachedContext);
}

void Scope::add(Handle& handle) noexcept {
  handle.scope = this;
  handle.previous = nullptr;
  handle.next = m_first;
  if (m_first != nullptr) m_first->previous = &handle;
  m_first = &handle;
}

void Scope::remove(Handle& handle) noexcept {
  if (handle.previous != nullptr) {
    handle.previous->next = handle.next;
  } else {
    m_first = handle.next;
  }
  if (handle.next != nullptr) handle.next->previous = handle.previous;
  handle.scope = nullptr;
}

Scope& innermostScope() {
  ThreadState& thread = threadState();
  if (thread.innermost == nullptr) new Scope(Scope::Reason::kThread, nullptr);
  return *thread.innermost;
}

Broker* currentBroker() noexcept {
  const ThreadState& thread = threadState();
  return thread.innermost == nullptr ? nullptr : thread.innermost->broker();
}

bool isInCall(const ThreadState& thread, const Broker* broker) noexcept {
  for (const Scope* scope = thread.innermost; scope != nullptr; scope = scope->outer()) {
    if (scope->reason() != Scope::Reason::kCall) continue;
    if (broker == nullptr || scope->broker() == broker) return true;
  }
  return false;
}

void closeAllScopes(ThreadState& thread) noexcept {
  while (thread.innermost != nullptr) delete thread.innermost;
}

}  // namespace cmpinsp::broker
