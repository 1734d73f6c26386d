#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace cmpinsp {

/// What may lie in a folder of caches.
struct CacheLimits {
  std::uint64_t mostBytes = std::uint64_t{64} << 20U;  ///< of all caches in the folder
  std::chrono::hours oldestTemporary{1};  ///< what is older belongs to a start that was killed
  std::size_t mostFiles = std::numeric_limits<std::size_t>::max();  ///< that are looked at
};

/// What a start that takes its cache has the time for: it makes the folder no larger.
constexpr CacheLimits kPassingBy{std::numeric_limits<std::uint64_t>::max(), std::chrono::hours(1),
                                 16};

/// Removes what earlier starts left beside the cache file at `path` (UTF-8): files of starts that
/// were killed while they wrote, caches of installations of which no file is there any more, and
/// where the caches are too large together, those that were written longest ago. The file at
/// `path` stays, and so does everything that has no name of a cache, or is no file of its own. In
/// folders that others can change nothing is removed.
void tidyCaches(const std::string& path, const CacheLimits& limits = CacheLimits());

}  // namespace cmpinsp
