#pragma once

#include <functional>
#include <memory>
#include <thread>

namespace providers::sensors {

/// Keeps the machine busy for as long as the object lives.
class Load {
 public:
  virtual ~Load() = default;
};

using StartLoad = std::function<std::unique_ptr<Load>()>;

/// Starts a thread; throws `std::system_error` where the system allows no more.
using StartThread = std::function<std::thread(std::function<void()>)>;

/// A thread for each processor that this process may use, calculating without a pause. Where they
/// cannot all be started, none is left, and it throws `std::system_error`.
std::unique_ptr<Load> startProcessorLoad();
std::unique_ptr<Load> startProcessorLoad(const StartThread& start);

/// How many threads that makes.
unsigned processorLoadThreads();

}  // namespace providers::sensors
