#pragma once

#include <mutex>

namespace engine {

/// While it is there, this thread alone starts or forgets children by libuv, which takes the signal
/// that tells of their ends (SIGCHLD) for itself. Behind it the signal goes to libuv and to whoever
/// in this process had it before, and to them alone once libuv needs it no more. On Windows there
/// is no such signal.
class ChildSignalTurn {
 public:
  ChildSignalTurn();
  ChildSignalTurn(const ChildSignalTurn&) = delete;
  ChildSignalTurn& operator=(const ChildSignalTurn&) = delete;
  ~ChildSignalTurn();

 private:
  std::unique_lock<std::mutex> m_lock;
};

}  // namespace engine
