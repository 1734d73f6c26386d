#pragma once

#include <vector>

#include "providers/memory/engine/MemoryEngine.h"

namespace providers::memory {

/// What came of testing a page alone, several times.
struct RetestResult {
  unsigned rounds = 0;
  unsigned failed = 0;      ///< rounds in which there was an error
  bool wasPlanned = false;  ///< there was time for it
  std::uint64_t bits = 0;   ///< that were wrong in any of them

  /// It comes back: the page is broken. Otherwise something turned its bits over once.
  bool hard() const { return failed > 0; }
};

/// How a page is tested: with what went over all the memory.
struct RetestPlan {
  TestType type = TestType::MovingInversionsZeros;
  std::uint64_t seed = 0;
  double restSeconds = 0;
  unsigned rounds = 0;
  const Kernels* kernels = nullptr;
};

/// Shares out the time that pages can be given to rest in alone: a test has a time limit, and who
/// exceeds it loses what was found.
class RestBudget {
 public:
  /// A round has two rests of so many seconds; one round there is in any case.
  explicit RestBudget(double restSeconds);
  /// The rounds of the next page: two if possible.
  unsigned takeRounds();

 private:
  const double m_round;
  double m_left;
};

/// Overwrites the page at `words`, on the first thread of the team. Ends early on request.
RetestResult retestPage(std::uint64_t* words, const RetestPlan& plan, ThreadTeam& team,
                        Resting& resting, RunControl& control);

}  // namespace providers::memory
