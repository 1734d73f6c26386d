#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "providers/memory/engine/MemoryEngine.h"
#include "providers/memory/placing/ErrorCounters.h"
#include "providers/memory/placing/MemoryModules.h"
#include "providers/memory/placing/PageMap.h"
#include "providers/memory/size/MemoryBuffer.h"
#include "providers/memory/size/MemorySize.h"
#include "providers/memory/size/MemoryTurn.h"
#include "providers/memory/size/Processors.h"

namespace providers::memory {

/// How large the machine is, for those who list and plan.
struct Extent {
  MemorySize size;
  std::size_t processors = 0;
};

/// What the diagnostics need of the machine; a test has its own.
struct Surroundings {
  std::function<MemorySize()> size = queryMemorySize;
  /// Of late, as of the beginning of a listing: empty where size and processors are to be asked.
  std::function<Extent()> lately;
  /// Throws `std::bad_alloc` when there is not that much.
  std::function<std::unique_ptr<MemoryBuffer>(std::size_t bytes)> allocate = [](std::size_t bytes) {
    return std::make_unique<MemoryBuffer>(bytes);
  };
  /// Null while somebody else tests a large part of the memory.
  std::function<std::unique_ptr<MemoryTurn>(const MemorySize&)> takeTurn =
      [](const MemorySize& found) { return memory::takeTurn(turnName(found, {})); };
  std::function<std::vector<Processor>()> processors = usableProcessors;
  /// Of the caches that these processors have.
  std::function<std::size_t(const std::vector<Processor>&)> cacheBytes = queryCacheBytes;
  ThreadTeam::Start start = ThreadTeam::startThread;
  std::function<double()> clock;        ///< seconds from any beginning
  std::function<std::uint64_t()> seed;  ///< for runs whose settings have none
  std::shared_ptr<Resting> resting = std::make_shared<RealResting>();
  const Kernels* kernels = nullptr;  ///< null: the best of this processor
  std::function<PhysicalPlace(const void*)> physical = physicalPlace;
  std::function<std::string()> firmware = firmwareTable;
  std::function<bool()> hasFirmware = hasFirmwareTable;
  std::function<std::vector<ErrorCounter>()> counters = [] { return readErrorCounters({}); };

  /// What a listing asks for dozens of times, and a run never.
  Extent extent() const { return lately ? lately() : Extent{size(), processors().size()}; }
};

/// The one device of the family.
std::vector<Device> memoryDevices(const MemorySize& size);

}  // namespace providers::memory
