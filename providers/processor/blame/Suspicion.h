#pragma once

#include <cstdint>

#include "providers/processor/operations/Operation.h"

namespace providers {

/// A result that differs from its answer. Which of the two is wrong is not known yet.
struct Suspicion {
  unsigned cpu = 0;         ///< where the result was got
  unsigned answeredBy = 0;  ///< where the answer was
  Operation operation;
  std::uint64_t seed = 0;
  Mismatch mismatch;  ///< the first one
  /// The answer itself is not the one that was known before; the mismatch has the digests of both.
  bool isAnswer = false;
  std::uint64_t count = 1;  ///< on that CPU with this operation
};

}  // namespace providers
