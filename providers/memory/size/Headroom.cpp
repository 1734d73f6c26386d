#include "providers/memory/size/Headroom.h"

#include <algorithm>
#include <limits>

namespace providers::memory {

namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;

std::uint64_t wholeMebibytes(std::uint64_t bytes) { return bytes - bytes % kMebi; }

/// Those that have room for so many bytes.
std::uint64_t mebibytesFor(std::uint64_t bytes) {
  const std::uint64_t whole = wholeMebibytes(bytes);
  const bool fits = whole <= std::numeric_limits<std::uint64_t>::max() - kMebi;
  return whole < bytes && fits ? whole + kMebi : whole;
}

}  // namespace

std::uint64_t headroom(std::uint64_t available) {
  constexpr std::uint64_t kForProcesses = 64 * kMebi;
  constexpr std::uint64_t kGrowth = 50;
  constexpr std::uint64_t kMost = 10;
  return std::min(kForProcesses + available / kGrowth, available / kMost);
}

std::uint64_t testableBytes(const MemorySize& size) {
  return wholeMebibytes(size.available - headroom(size.available));
}

std::uint64_t askedBytes(const MemorySize& size, std::uint64_t wanted, unsigned percent) {
  constexpr std::uint64_t kFull = 100;
  const std::uint64_t whole = testableBytes(size);
  const std::uint64_t part = whole / kFull * percent + whole % kFull * percent / kFull;
  return std::max(wanted ? mebibytesFor(wanted) : wholeMebibytes(part), kMebi);
}

}  // namespace providers::memory
