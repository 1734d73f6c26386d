#pragma once

#include <functional>
#include <memory>

namespace providers::sensors {

/// Keeps the machine busy for as long as the object lives.
class Load {
 public:
  virtual ~Load() = default;
};

using StartLoad = std::function<std::unique_ptr<Load>()>;

/// A thread for each processor that this process may use, calculating without a pause.
std::unique_ptr<Load> startProcessorLoad();

/// How many threads that makes.
unsigned processorLoadThreads();

}  // namespace providers::sensors
