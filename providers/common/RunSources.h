#pragma once

#include <cstdint>

namespace providers {

/// Seconds from any beginning, never going back.
double steadySeconds();

/// A number to start the random numbers of a run from, which a user can repeat.
std::uint64_t randomSeed();

}  // namespace providers
