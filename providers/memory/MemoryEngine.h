#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// Called between two sweeps over the words, when all of them have been written or checked: the
/// place where the content has to rest in memory. A test can put a fault in here.
class MemorySettler {
 public:
  virtual ~MemorySettler() = default;
  virtual void settle(std::uint64_t* words, std::size_t count) = 0;
};

/// Sees to it that the processor's write buffers are empty.
class WriteBufferSettler : public MemorySettler {
 public:
  void settle(std::uint64_t* words, std::size_t count) override;
};

/// How much is to be done.
struct MemoryPlan {
  double targetSeconds = 7;  ///< rounds are repeated for about this long; there is at least one
  bool haltOnError = false;
  std::uint64_t seed = 0;
};

/// A word that was not what had been written.
struct MemoryFault {
  std::string pattern;
  std::uint64_t offset = 0;  ///< in bytes from the beginning of the tested words
  std::uint64_t expected = 0;
  std::uint64_t actual = 0;
};

struct PatternResult {
  std::string name;
  std::uint64_t bytes = 0;  ///< written and checked, together
  double seconds = 0;
  std::uint64_t errors = 0;
};

struct MemoryReport {
  std::vector<PatternResult> patterns;
  std::vector<MemoryFault> faults;  ///< the first ones
  std::uint64_t errors = 0;
  std::uint64_t testedBytes = 0;  ///< how much memory every pattern went over, or was to
  unsigned rounds = 0;            ///< complete ones
  bool stopped = false;           ///< on request
};

/// Writes patterns to memory and checks them: each pattern is written, checked and inverted upward,
/// checked and inverted downward, and checked once more. One use, on one thread.
class MemoryEngine {
 public:
  using Clock = std::function<double()>;

  /// Goes over `count` words, a multiple of 8, aligned to 64 bytes, which it overwrites. `clock`
  /// tells seconds from any beginning. All outlive the engine.
  MemoryEngine(std::uint64_t* words, std::size_t count, MemorySettler& settler, Clock clock);

  MemoryReport run(const MemoryPlan& plan, RunControl& control);

 private:
  bool runRound(unsigned round);
  template <class Generator>
  bool runPattern(std::size_t index, const Generator& generator);
  template <class Work>
  bool sweep(std::size_t index, bool downward, const Work& work);
  template <class Generator>
  bool checkLine(std::size_t index, std::uint64_t* words, std::size_t first,
                 const Generator& generator);
  void addFault(std::size_t index, std::size_t word, std::uint64_t expected, std::uint64_t actual);
  void planRounds(double patternSeconds);
  bool goesOn();

  std::uint64_t* const m_words;
  std::size_t m_count;
  MemorySettler& m_settler;
  const Clock m_clock;
  MemoryPlan m_plan;
  RunControl* m_control = nullptr;
  MemoryReport m_report;
  unsigned m_rounds = 1;
  bool m_planned = false;  ///< whether `m_rounds` is more than a guess
  std::uint64_t m_linesDone = 0;
  double m_progress = 0;
};

}  // namespace providers
