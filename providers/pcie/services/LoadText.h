#pragma once

#include <string>

#include "providers/pcie/services/LinkWatch.h"

namespace providers::pcie {

/// What was read of the disks behind the link, or why not; empty where it has none.
std::string loadText(const Link& link, const LoadReport& load);

/// How all links were loaded, and what that leaves open.
std::string loadText(const LinkWatch& watch, double seconds);

double mebibytesRead(const LoadReport& load);

}  // namespace providers::pcie
