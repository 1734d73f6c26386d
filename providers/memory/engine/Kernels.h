#pragma once

#include <cstddef>
#include <vector>

#include "providers/memory/engine/Pattern.h"

namespace providers::memory {

enum class Direction { Up, Down };

/// Lines of the words that a loop is given; going down, it begins with the last one.
struct LineRange {
  std::size_t first = 0;
  std::size_t count = 0;
};

/// The loops in one set of instructions. `words` are aligned to a line. A check goes on until a
/// line differs and tells how many it has passed; that line is left as it is. What is written takes
/// the place of what was expected, and both patterns are of one kind.
struct Kernels {
  const char* name;
  void (*write)(std::uint64_t* words, LineRange lines, const Pattern& pattern);
  std::size_t (*check)(const std::uint64_t* words, LineRange lines, Direction direction,
                       const Pattern& expected);
  std::size_t (*checkAndWrite)(std::uint64_t* words, LineRange lines, Direction direction,
                               const Pattern& expected, const Pattern& next);
  /// The same, with what is written past the caches: slower, but none of it stays in them.
  std::size_t (*checkAndStream)(std::uint64_t* words, LineRange lines, Direction direction,
                                const Pattern& expected, const Pattern& next);
  void (*drain)();  ///< waits until all that this thread wrote is written
};

/// Those that this processor can run, the plain ones first and the best last.
std::vector<const Kernels*> availableKernels();

const Kernels& bestKernels();

// Each is null where it is not part of this build.
const Kernels* scalarKernels();
const Kernels* sse2Kernels();
const Kernels* avx2Kernels();
const Kernels* avx512Kernels();

}  // namespace providers::memory
