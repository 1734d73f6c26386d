#pragma once

#include "substitute/cmpi.nsp/broker/lifetime/Handle.h"

namespace cmpinsp::broker {

struct ThreadState;

/// Owns the objects that are made while it is the innermost scope of its thread. A call into a
/// provider has one, an attached thread has one, `mark` opens one within them, and a thread that
/// enters the broker without any of these gets one that lives as long as the thread.
///
/// Belongs to the thread that opened it.
class Scope {
 public:
  enum class Reason : unsigned char { kCall, kAttached, kMarked, kThread };

  /// Opens a scope within the calling thread's innermost one.
  Scope(Reason reason, Broker* broker);
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  /// Closes it, and whatever was left open within it.
  ~Scope();

  Reason reason() const noexcept { return m_reason; }
  Broker* broker() const noexcept { return m_broker; }
  Scope* outer() const noexcept { return m_outer; }
  bool isOf(const ThreadState& thread) const noexcept { return m_thread == &thread; }

  /// Takes `handle` over, which belongs to nobody.
  void add(Handle& handle) noexcept;
  /// Lets `handle` go, which it owns.
  void remove(Handle& handle) noexcept;

  /// The context that an attached thread came with; only its address, unless there is something
  /// to be done with it when the scope closes.
  Handle* attachedContext = nullptr;
  void (*letContextGo)(Handle& context) noexcept = nullptr;

 private:
  ThreadState* m_thread;
  Broker* m_broker;
  Scope* m_outer;
  Handle* m_first = nullptr;
  Reason m_reason;
};

/// The calling thread's innermost scope; opens its own one where there is none.
Scope& innermostScope();

/// The broker whose provider the calling thread is in, or null.
Broker* currentBroker() noexcept;

/// Whether a call into a provider is under way on `thread`; with a `broker`, into that one's.
bool isInCall(const ThreadState& thread, const Broker* broker = nullptr) noexcept;

/// Closes every scope of `thread`, which is the calling one and in no call: the scopes of calls are
/// not ours to delete.
void closeAllScopes(ThreadState& thread) noexcept;

}  // namespace cmpinsp::broker
