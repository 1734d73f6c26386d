#pragma once

#include <cstdint>

namespace fleet {

/// Some of a whole, and how many of them fail.
struct Share {
  std::uint32_t failing = 0;
  std::uint32_t all = 0;
};

/// How likely it is that at least so many of the group would fail if the failing ones were spread
/// over the group and the rest by chance: Fisher's exact test, one-sided.
double chanceOf(const Share& group, const Share& rest);

/// Whether a group fails clearly more often than the rest: at least three of it do, at least twice
/// as often, and among as many groups as were looked at, less than one in a hundred wholes would
/// have such a one by chance.
bool standsOut(const Share& group, const Share& rest, std::uint64_t looks);

}  // namespace fleet
