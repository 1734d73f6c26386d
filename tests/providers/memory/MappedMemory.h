#pragma once

namespace providers {

/// Whether the address is one of this process's.
bool isMapped(const void* address);

}  // namespace providers
