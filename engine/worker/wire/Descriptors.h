#pragma once

#include <cstddef>

/// The calls of the system that the pipes need.
namespace engine::wire {

/// Moves a descriptor to a number of its own that no child inherits; -1 where it is not open.
int takeAway(int descriptor) noexcept;

/// From now on a process that this one forks has none of them: what a provider's child says, its
/// crash above all, is not the worker's.
void closeInChildren(int& in, int& out, int& place) noexcept;

/// What came, 0 at the end, -1 at an error; an interrupted call is made again.
long readSome(int descriptor, char* bytes, std::size_t size) noexcept;
long writeSome(int descriptor, const char* bytes, std::size_t size) noexcept;

}  // namespace engine::wire
