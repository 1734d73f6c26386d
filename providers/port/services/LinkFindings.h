#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "providers/common/Findings.h"
#include "providers/port/finding/Port.h"

namespace providers::port {

/// What was seen of a port: at the beginning of a watch, at its end, and what it could do.
struct PortWatch {
  PortState before;
  PortState after;
  LinkModes modes;
  std::uint64_t seenChanges = 0;  ///< between link and no link, as far as somebody looked
};

/// Whether there is a link, or nothing tells that there is none.
bool isLinked(const PortState& state);

/// What is wrong with the port, the link first.
std::vector<Finding> findingsOf(const Port& port, const PortWatch& watch);

/// By how much the counters rose that did. One that is lower than it was has been set back.
using Rises = std::vector<std::pair<std::string, std::uint64_t>>;
Rises risesOf(const std::map<std::string, std::uint64_t>& before,
              const std::map<std::string, std::uint64_t>& after);

/// "1000 Mbit/s, full duplex"; what is not told is said to be so.
std::string linkText(const PortState& state);

}  // namespace providers::port
