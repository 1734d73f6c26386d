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

/// Whether the results of a block may be right by what they say of themselves. A library's
/// operation without another way ends each item with a word that is 1 where a text came back, or a
/// published value was met; of others there is nothing to be said.
bool mayBeRight(const Operation& operation, const Words& results);

}  // namespace providers
