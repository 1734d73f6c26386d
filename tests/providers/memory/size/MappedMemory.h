#pragma once

#include <cstddef>

namespace providers::memory {

/// Whether the address is one of this process's.
bool isMapped(const void* address);

/// How much memory this process has now.
std::size_t residentBytes();

}  // namespace providers::memory
