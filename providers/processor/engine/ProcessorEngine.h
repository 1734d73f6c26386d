#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/processor/blame/Blame.h"
#include "providers/processor/operations/Operation.h"
#include "providers/processor/topology/CpuTopology.h"
#include "providers/processor/topology/Threads.h"

namespace providers {

/// What the engine needs of its surroundings; a test has its own. All are called on many threads.
struct ProcessorSurroundings {
  std::function<bool(unsigned)> bind;     ///< binds the calling thread to a CPU
  std::function<double()> clock;          ///< seconds from any beginning
  std::function<double()> threadSeconds;  ///< those of the calling thread on a processor
  const Executor* executor = nullptr;     ///< outlives the engine
  StartThread start = startThread;
};

struct ProcessorPlan {
  Operations operations;
  std::vector<unsigned> cpus;    ///< to test, all at the same time
  std::vector<CpuPlace> places;  ///< all that can be used to find out what a fault is of
  double targetSeconds = 7;      ///< every operation is done at least once
  bool haltOnError = false;
  std::uint64_t seed = 0;
};

/// A fault, and how often it was seen.
struct CalculationFault {
  Suspicion suspicion;
  Verdict verdict;
  std::uint64_t count = 0;
};

struct ProcessorReport {
  std::vector<unsigned> tested;
  std::vector<unsigned> unusable;  ///< to which no thread could be bound, or not to the end
  std::size_t unstarted = 0;       ///< of them, for which the system started no thread
  std::size_t operations = 0;      ///< different ones
  std::uint64_t fewestBlocks = 0;  ///< of a tested CPU
  std::uint64_t mostBlocks = 0;
  std::uint64_t errors = 0;
  std::vector<CalculationFault> findings;  ///< of the first ones
  double seconds = 0;
  double busy = 0;       ///< the share of the time on a processor, of the thread that had least
  bool stopped = false;  ///< on request
};

/// Does all operations on each of the CPUs at the same time, and finds out who is to blame for what
/// went wrong.
class ProcessorEngine {
 public:
  explicit ProcessorEngine(const ProcessorSurroundings& surroundings)
      : m_surroundings(surroundings) {}

  ProcessorReport run(const ProcessorPlan& plan, RunControl& control) const;

 private:
  const ProcessorSurroundings& m_surroundings;
};

}  // namespace providers
