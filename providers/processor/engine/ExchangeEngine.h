#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/processor/coherency/MessageExchange.h"
#include "providers/processor/topology/Threads.h"

namespace providers {

struct ExchangeSurroundings {
  std::function<bool(unsigned)> bind;  ///< binds the calling thread to a CPU
  std::function<double()> clock;       ///< seconds from any beginning
  const MessageTap* tap = nullptr;     ///< outlives the engine
  StartThread start = startThread;
};

struct ExchangePlan {
  std::vector<unsigned> cpus;
  double targetSeconds = 2;  ///< every pair exchanges some messages at least
  bool haltOnError = false;
};

/// A pair that does not understand each other.
struct ExchangeFault {
  unsigned cpu1 = 0;
  unsigned cpu2 = 0;
  WrongWord wrong;
  bool wasTried = false;  ///< again
  bool comesBack = false;
  bool firstWithOthers = false;   ///< the first one gets it wrong with a third one, too
  bool secondWithOthers = false;  ///< and so does the second one
  bool hadOthers = false;         ///< there was a third one to try it with
  std::size_t leftOut = 0;        ///< third ones that it was not tried with
  std::string whyLeftOut;         ///< or not tried at all: within a sentence
};

struct ExchangeReport {
  std::vector<unsigned> tested;
  std::vector<unsigned> unusable;  ///< to which no thread could be bound
  std::uint64_t pairs = 0;
  std::uint64_t unstarted = 0;  ///< pairs for which the system started no threads
  std::uint64_t messages = 0;
  std::uint64_t errors = 0;
  std::vector<ExchangeFault> faults;  ///< the first ones
  double seconds = 0;
  bool stopped = false;
};

/// Lets each CPU exchange messages with each other one, all at the same time.
ExchangeReport exchangeAll(const ExchangeSurroundings& surroundings, const ExchangePlan& plan,
                           RunControl& control);

}  // namespace providers
