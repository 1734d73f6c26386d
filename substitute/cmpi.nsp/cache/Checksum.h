#pragma once

#include <cstdint>
#include <string_view>

namespace cmpinsp {

/// A checksum in which a change of up to eight bytes on end always shows, at the speed of memory.
/// It guards against accidents, not against forgery.
std::uint64_t checksumOf(std::string_view bytes) noexcept;

}  // namespace cmpinsp
