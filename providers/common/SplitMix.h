#pragma once

#include <cstdint>

namespace providers {

/// The `index`-th of the random numbers that belong to a seed: SplitMix64, which needs no state.
inline std::uint64_t splitMix(std::uint64_t seed, std::uint64_t index) {
  std::uint64_t z = seed + (index + 1) * 0x9E3779B97F4A7C15ULL;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

}  // namespace providers
