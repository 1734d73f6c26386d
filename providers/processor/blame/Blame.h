#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "providers/processor/blame/Extent.h"
#include "providers/processor/blame/Suspicion.h"
#include "providers/processor/topology/Threads.h"

namespace providers {

/// Who is to blame for a wrong result, and for how much of it.
struct Verdict {
  CpuPlace place;
  Extent extent = Extent::Undecided;
  bool comesBack = false;
  bool wasTried = true;                    ///< again
  unsigned tries = 0;                      ///< that were made on the blamed thread alone
  unsigned wrongAlone = 0;                 ///< of them
  std::optional<unsigned> wrongUnderLoad;  ///< of as many with others busy; none: not tried
  std::vector<unsigned> wrongToo;          ///< other threads that get it wrong, ascending
  std::vector<unsigned> right;             ///< other threads that get it right, ascending
  std::size_t leftOut = 0;                 ///< other threads that it was not tried on
  std::string whyLeftOut;                  ///< or not tried at all: within a sentence
  Mismatch mismatch;                       ///< with what is right, and what was got
};

/// What blaming needs of its surroundings.
struct BlameSurroundings {
  std::function<bool(unsigned)> bind;  ///< binds the calling thread to a CPU
  const Executor* executor = nullptr;  ///< outlives the blame
  StartThread start = startThread;
  /// Asked before each try but those of the two that disagree: empty while there may be more, or
  /// why not.
  std::function<std::string()> whyNotOn = [] { return std::string(); };
};

/// Tries what failed again: alone, and on each of the others.
class Blame {
 public:
  /// `places` are all threads that may be used.
  Blame(BlameSurroundings surroundings, std::vector<CpuPlace> places);

  /// Where nothing may be tried any more, what there is to say without.
  Verdict judge(const Suspicion& suspicion) const;

 private:
  struct Trial;
  struct Trials;

  Verdict untried(const Suspicion& suspicion, const std::string& why) const;
  Trial tryOn(const CpuPlace& place, const Suspicion& suspicion) const;
  Trials tryOnAll(const Suspicion& suspicion) const;
  Verdict decide(const Suspicion& suspicion, const Trials& trials) const;
  std::optional<unsigned> tryUnderLoad(const CpuPlace& place, const Suspicion& suspicion,
                                       std::optional<std::uint64_t> right) const;
  std::vector<CpuPlace> inOrder(const Suspicion& suspicion) const;
  CpuPlace placeOf(unsigned cpu) const;

  const BlameSurroundings m_surroundings;
  const std::vector<CpuPlace> m_places;
};

}  // namespace providers
