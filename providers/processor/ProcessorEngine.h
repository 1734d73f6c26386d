#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/processor/Operations.h"

namespace providers {

/// What the engine needs of its surroundings; a test has its own.
struct ProcessorSurroundings {
  std::function<bool(unsigned)> bind;  ///< binds the calling thread to a CPU
  std::function<double()> clock;       ///< seconds from any beginning; called on many threads
  std::vector<Operation> operations;
  ResultTap* tap = nullptr;  ///< called on many threads; outlives the engine
};

struct ProcessorPlan {
  double targetSeconds = 7;  ///< every operation is done at least once
  bool haltOnError = false;
  unsigned coveragePercent = 100;  ///< the share of the operations, 1 to 100
  std::uint64_t seed = 0;
};

/// A wrong result.
struct ProcessorFault {
  std::vector<unsigned> cpus;  ///< where it was; two when they could not agree
  std::string operation;
  Mismatch mismatch;
};

struct ProcessorReport {
  std::vector<unsigned> tested;
  std::vector<unsigned> unusable;  ///< to which no thread could be bound
  std::size_t operations = 0;      ///< different ones
  std::uint64_t fewestRuns = 0;    ///< of a tested CPU
  std::uint64_t mostRuns = 0;
  std::uint64_t messages = 0;  ///< between CPUs
  std::uint64_t errors = 0;
  std::vector<ProcessorFault> faults;  ///< the first ones
  double seconds = 0;
  bool stopped = false;  ///< on request
};

/// Does all operations on each of the CPUs at the same time, and then lets neighbours exchange
/// messages.
class ProcessorEngine {
 public:
  explicit ProcessorEngine(const ProcessorSurroundings& surroundings)
      : m_surroundings(surroundings) {}

  ProcessorReport run(const std::vector<unsigned>& cpus, const ProcessorPlan& plan,
                      RunControl& control);

 private:
  const ProcessorSurroundings& m_surroundings;
};

}  // namespace providers
