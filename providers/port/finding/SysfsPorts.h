#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/port/finding/Port.h"

namespace providers::port {

/// Whether the port's driver has self-tests.
using HasSelfTests = std::function<bool(const std::string& name)>;

/// The Ethernet ports below `sys`, which is "/sys" but in tests: those of a device, and the
/// loopback interface. What others make of ports (bridges, bonds, tunnels, the half of a pair) is
/// none, and neither is a radio. By name: eth2 before eth10.
std::vector<Port> findSysfsPorts(const std::string& sys, const HasSelfTests& hasSelfTests);

/// The port's state at this moment.
PortState readSysfsPort(const std::string& sys, const Port& port);

}  // namespace providers::port
