#pragma once

#include <optional>
#include <string>

namespace providers::pcie {

/// The speed that a port was told to go to at most, in tenths of GT/s, out of the bytes of its
/// configuration. Nothing where these have no such thing, or end before it, as they do for others
/// than root.
std::optional<unsigned> targetSpeed(const std::string& configuration);

}  // namespace providers::pcie
