#pragma once

namespace substitute {

/// Learns when the framework enters the code of a provider and comes back from it, so that whoever
/// ends with the process can say where it was. Told on the thread that enters, from any thread, and
/// of calls within calls; a call that ends the process is never left. What ends a thread leaves.
class ICallWatch {
 public:
  virtual ~ICallWatch() = default;
  /// `provider` is the registered name, empty for a thread that works for nobody known; `operation`
  /// is "load" for the library, "create" for a factory, "thread" for what a thread runs that the
  /// provider started through its broker, "cleanup", or the name of the function in the interface's
  /// table. Both texts stay valid until the process ends.
  virtual void entered(const char* provider, const char* operation) noexcept = 0;
  virtual void left() noexcept = 0;
  /// An exception came out of a call that was left. `what` says of which function, and its text; it
  /// is gone when this returns.
  virtual void threw(const char* provider, const char* what) noexcept {
    static_cast<void>(provider);
    static_cast<void>(what);
  }
};

}  // namespace substitute
