#pragma once

#include <cstddef>

namespace engine::guard {

/// How many bytes of addresses this process has in use; 0 where that is not known. Takes no memory.
std::size_t processSize() noexcept;

}  // namespace engine::guard
