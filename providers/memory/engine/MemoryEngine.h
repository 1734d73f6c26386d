#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/memory/engine/Findings.h"
#include "providers/memory/engine/MemoryReport.h"
#include "providers/memory/engine/Sequence.h"
#include "providers/memory/engine/ThreadTeam.h"

namespace providers::memory {

/// What happens to the content between sweeps, while no thread writes or checks. A test can put a
/// fault in here.
class Resting {
 public:
  virtual ~Resting() = default;
  /// After each sweep: all has been written or checked.
  virtual void settle(std::uint64_t*, std::size_t) {}
  /// Leaves the content alone for some time.
  virtual void rest(double seconds) = 0;
};

/// Sleeps.
class RealResting : public Resting {
 public:
  void rest(double seconds) override;
};

/// How the words are gone over.
struct EngineSetup {
  std::vector<LineRange> regions;  ///< of each thread; they need not be all of the words
  const Kernels* kernels = nullptr;
  std::size_t cacheBytes = 0;  ///< of all caches: so much of what is written last may stay there
  bool haltOnError = false;
  std::function<double()> clock;  ///< seconds from any beginning
};

/// Writes and checks patterns, sweep by sweep, each thread in a region of its own. One use.
class MemoryEngine {
 public:
  /// The words are aligned to a line; all outlive the engine.
  MemoryEngine(std::uint64_t* words, std::size_t count, ThreadTeam& team, Resting& resting,
               EngineSetup setup);

  MemoryReport run(const std::vector<Sweep>& sweeps, RunControl& control);

 private:
  bool rest(double seconds);
  void sweep(const Sweep& sweep, std::size_t number);
  void sweepRegion(const Sweep& sweep, std::size_t number, unsigned thread);
  void sweepBlock(const Sweep& sweep, std::size_t number, unsigned thread, LineRange block,
                  bool streams);
  void inspect(const Sweep& sweep, std::size_t number, unsigned thread, std::size_t line);
  void look();
  bool goesOn() const { return !m_ending; }

  std::uint64_t* const m_words;
  const std::size_t m_count;
  ThreadTeam& m_team;
  Resting& m_resting;
  const EngineSetup m_setup;
  RunControl* m_control = nullptr;
  MemoryReport m_report;
  std::vector<Findings> m_findings;  ///< of each thread
  std::atomic<std::uint64_t> m_linesDone{0};
  std::atomic<bool> m_ending{false};
  std::size_t m_lines = 0;  ///< of all regions
  double m_steps = 1;       ///< sweeps and rests of the whole run
  double m_stepsDone = 0;   ///< whole ones
};

/// Shares the lines of so many words out among threads.
std::vector<LineRange> evenRegions(std::size_t words, unsigned threads);

}  // namespace providers::memory
