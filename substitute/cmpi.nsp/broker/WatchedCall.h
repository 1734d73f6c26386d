#pragma once

#include "substitute/cmpi.nsp/CallWatch.h"

namespace cmpinsp {

/// Who is told of the calls into providers that begin from now on; null: nobody. Threads that
/// providers keep may tell it until they end. Safe to use from several threads.
void setCallWatch(substitute::ICallWatch* watch) noexcept;

/// Tells the watch that an exception came out of a call into this provider.
void tellThrown(const char* provider, const char* what) noexcept;

/// A call into a provider is under way as long as this lives, on the thread that made it.
class WatchedCall {
 public:
  /// Both texts stay valid until the process ends.
  WatchedCall(const char* provider, const char* operation) noexcept;
  WatchedCall(const WatchedCall&) = delete;
  WatchedCall& operator=(const WatchedCall&) = delete;
  ~WatchedCall() {
    if (m_watch != nullptr) m_watch->left();
  }

 private:
  substitute::ICallWatch* const m_watch;
};

}  // namespace cmpinsp
