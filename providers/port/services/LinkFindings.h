#pragma once

#include <string>
#include <vector>

#include "providers/common/Findings.h"
#include "providers/port/ethtool/LinkModes.h"
#include "providers/port/finding/Port.h"

namespace providers::port {

/// What was seen of a port: at the beginning of a watch, at its end, and what it could do.
struct PortWatch {
  PortState before;
  PortState after;
  LinkModes modes;
};

/// What is wrong with the port, the link first.
std::vector<Finding> findingsOf(const Port& port, const PortWatch& watch);

/// By how much the counters rose that did. One that is lower than it was has been set back.
std::vector<std::pair<std::string, std::uint64_t>> risesOf(const PortWatch& watch);

/// "1000 Mbit/s, full duplex"; what is not told is said to be so.
std::string linkText(const PortState& state);

}  // namespace providers::port
