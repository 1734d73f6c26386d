#pragma once

#include <memory>

namespace engine {

/// While it is there, this thread's writing to a pipe that nobody reads fails, as it should, and
/// does not end the process by a signal. On Windows there is no such signal.
class NoPipeSignal {
 public:
  NoPipeSignal();
  NoPipeSignal(const NoPipeSignal&) = delete;
  NoPipeSignal& operator=(const NoPipeSignal&) = delete;
  ~NoPipeSignal();

 private:
  struct Former;
  std::unique_ptr<Former> m_former;
};

}  // namespace engine
