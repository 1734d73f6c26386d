#pragma once

#include <string>
#include <vector>

#include "providers/pcie/finding/Link.h"

namespace providers::pcie {

/// Whether there is any link below `sys`, which is "/sys" but in tests; no device is asked
/// anything.
bool hasLinks(const std::string& sys);

/// All links, by the addresses of their devices; of a device with several functions the first one
/// stands for all.
std::vector<Link> findLinks(const std::string& sys);

/// What the two ends of a link are at this moment.
LinkEnd readEnd(const std::string& sys, const std::string& address);

/// What all devices have counted since the system's start.
AllErrors readErrors(const std::string& sys);

/// The beginning of a device's configuration, which every user may read: 64 bytes, each four of
/// which go over the link as a request and an answer. Empty when it cannot be read.
std::string readConfiguration(const std::string& sys, const std::string& address);

}  // namespace providers::pcie
