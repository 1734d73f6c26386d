#pragma once

#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/memory/engine/MemoryReport.h"
#include "providers/memory/placing/ErrorCounters.h"
#include "providers/memory/placing/MemoryModules.h"
#include "providers/memory/placing/PageMap.h"
#include "providers/memory/placing/Retest.h"
#include "providers/memory/size/MemorySize.h"

namespace providers::memory {

/// What a run had to work with.
struct RunFrame {
  MemorySize size;
  std::uint64_t askedBytes = 0;
  std::uint64_t givenBytes = 0;  ///< what the system let the test have of it
  std::string whyNotLocked;      ///< empty when it was
  std::uint64_t seed = 0;
  unsigned threads = 0;
  unsigned refusedThreads = 0;  ///< that the system did not start, of those that were wanted
  std::size_t cacheBytes = 0;   ///< of the processors that test
  const char* kernels = "";
};

/// A page with errors, and all that is known of it.
struct PlacedPage {
  FaultyPage page;
  std::uint64_t address = 0;  ///< of the first wrong word
  PhysicalPlace physical;     ///< of the same
  std::vector<MemoryModule> modules;
  std::string whyNoModule;  ///< empty when there are some
  RetestResult retest;
};

/// What a run found.
struct RunFindings {
  MemoryReport report;
  std::vector<PlacedPage> pages;
  std::vector<ErrorCounter> counted;  ///< by the memory controllers during the run
};

/// As a record has it.
Outcome memoryOutcome(const RunFindings& findings, const RunFrame& frame);

/// What is told where the run was to end before the first sweep.
Outcome stoppedOutcome(const RunFrame& frame);

/// What is told where there was no memory to test.
Outcome noMemoryOutcome(const RunFrame& frame);

/// What is told of a memory, for example "256 MiB" or "23.4 GiB".
std::string sizeText(std::uint64_t bytes);

}  // namespace providers::memory
