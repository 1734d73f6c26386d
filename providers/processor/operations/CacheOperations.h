#pragma once

#include "providers/processor/operations/Operation.h"

namespace providers {

/// Lines of a cache filled, changed again and again in scattered order and read back, on so many
/// bytes at once. `name` outlives the operation.
Operation cacheOperation(const char* name, std::size_t bytes);

}  // namespace providers
