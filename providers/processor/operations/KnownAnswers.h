#pragma once

#include <cstdint>
#include <optional>

#include "providers/processor/operations/Operation.h"

namespace providers {

/// The seed of the blocks whose answers were known when the library was built.
constexpr std::uint64_t kKnownSeed = 0;

/// A number that stands for a block of results.
std::uint64_t digestOf(const Words& results);

/// That of the right results for the known seed; nothing for an operation without a known answer.
std::optional<std::uint64_t> knownDigest(const Operation& operation);

}  // namespace providers
