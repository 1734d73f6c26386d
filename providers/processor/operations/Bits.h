#pragma once

#include <cstdint>

namespace providers {

constexpr unsigned kBits = 64;

/// Takes any number of places.
inline std::uint64_t rotateLeft(std::uint64_t value, std::uint64_t places) {
  const unsigned by = static_cast<unsigned>(places % kBits);
  return value << by | value >> ((kBits - by) % kBits);
}

}  // namespace providers
