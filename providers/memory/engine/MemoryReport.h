#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "providers/memory/engine/Kernels.h"

namespace providers::memory {

constexpr std::uint64_t kPageBytes = 4096;

/// A word that was not what had been written.
struct MemoryFault {
  std::uint64_t offset = 0;  ///< in bytes from the beginning of the tested words
  std::uint64_t expected = 0;
  std::uint64_t actual = 0;  ///< as expected: it was wrong when it was read first, and then no more
  std::size_t sweep = 0;     ///< the number of the sweep that found it
  Direction direction = Direction::Up;
  unsigned thread = 0;
};

/// What was found on a page.
struct FaultyPage {
  std::uint64_t offset = 0;  ///< where the page begins
  MemoryFault first;
  std::uint64_t errors = 0;
  std::uint64_t bits = 0;  ///< all that were wrong in any word
};

struct MemoryReport {
  std::uint64_t bytesWritten = 0;
  std::uint64_t bytesChecked = 0;  ///< each of them had been written before
  double seconds = 0;              ///< of writing and checking, without the rests
  std::uint64_t errors = 0;
  std::uint64_t bits = 0;
  std::vector<FaultyPage> pages;  ///< the first ones, by their place
  std::size_t sweeps = 0;         ///< whole ones
  std::size_t plannedSweeps = 0;
  std::uint64_t testedBytes = 0;  ///< over which each sweep went, or was to
  bool stopped = false;           ///< on request
};

}  // namespace providers::memory
