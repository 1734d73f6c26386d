#pragma once

#include <cstdint>

namespace providers::disk {

inline constexpr std::uint64_t kMebi = 1U << 20;

}  // namespace providers::disk
