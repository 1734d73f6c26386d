#pragma once

namespace providers::memory {

/// Whether the address is one of this process's.
bool isMapped(const void* address);

}  // namespace providers::memory
