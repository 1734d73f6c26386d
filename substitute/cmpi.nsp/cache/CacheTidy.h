#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace cmpinsp {

/// What may lie in a folder of caches.
struct CacheLimits {
  std::uint64_t mostBytes = std::uint64_t{64} << 20U;  ///< of all caches in the folder
  std::chrono::hours oldestTemporary{1};  ///< what is older belongs to a start that was killed
};

/// Removes what earlier starts left beside the cache file at `path` (UTF-8): files of starts that
/// were killed while they wrote, caches of installations of which no file is there any more, and
/// where the caches are too large together, those that were written longest ago. The file at
/// `path` stays, and so does everything that has no name of a cache, or is no file of its own. In
/// folders that others can change nothing is removed.
void tidyCaches(const std::string& path, const CacheLimits& limits = CacheLimits());

}  // namespace cmpinsp
