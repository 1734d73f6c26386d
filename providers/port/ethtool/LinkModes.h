#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "providers/port/ethtool/EthtoolDoor.h"

namespace providers::port {

/// A way in which two ports can talk.
struct LinkMode {
  std::uint32_t megabits = 0;
  bool full = false;
};

/// What the port and its partner have agreed to be able to; `common` is empty unless both told.
struct LinkModes {
  std::optional<LinkMode> own;     ///< the best that the port has
  std::optional<LinkMode> common;  ///< the best that both offer
};

LinkModes readLinkModes(EthtoolDoor& door, const std::string& port);

}  // namespace providers::port
