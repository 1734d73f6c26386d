#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "providers/processor/blame/Extent.h"
#include "providers/processor/blame/Suspicion.h"

namespace providers {

/// Who is to blame for a wrong result, and for how much of it.
struct Verdict {
  CpuPlace place;
  Extent extent = Extent::Undecided;
  bool comesBack = false;
  bool wasTried = true;            ///< again
  unsigned tries = 0;              ///< that were made on the blamed thread alone
  unsigned wrongAlone = 0;         ///< of them
  unsigned wrongUnderLoad = 0;     ///< of as many while all the others were busy
  std::vector<unsigned> wrongToo;  ///< other threads that get it wrong
  std::vector<unsigned> right;     ///< other threads that get it right
  Mismatch mismatch;               ///< with what is right, and what was got
};

/// Tries what failed again: alone, and on each of the others.
class Blame {
 public:
  /// `bind` binds the calling thread to a CPU; `places` are all threads that may be used.
  Blame(std::function<bool(unsigned)> bind, const Executor& executor, std::vector<CpuPlace> places);

  Verdict judge(const Suspicion& suspicion) const;
  /// What there is to say without trying anything.
  Verdict untried(const Suspicion& suspicion) const;

 private:
  struct Trial;

  Trial tryOn(const CpuPlace& place, const Suspicion& suspicion) const;
  unsigned tryUnderLoad(const CpuPlace& place, const Suspicion& suspicion,
                        std::optional<std::uint64_t> right) const;
  CpuPlace placeOf(unsigned cpu) const;

  const std::function<bool(unsigned)> m_bind;
  const Executor& m_executor;
  const std::vector<CpuPlace> m_places;
};

}  // namespace providers
