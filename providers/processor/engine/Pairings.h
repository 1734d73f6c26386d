#pragma once

#include <utility>
#include <vector>

namespace providers {

using Pairing = std::vector<std::pair<unsigned, unsigned>>;

/// Rounds in which each meets each other once, all pairs of a round at the same time; with an odd
/// number of them, one pauses in every round.
std::vector<Pairing> pairings(const std::vector<unsigned>& cpus);

}  // namespace providers
