#pragma once

// Each of these needs what the one before it declares.
// clang-format off
#include <winsock2.h>
#include <ws2ipdef.h>
#include <iphlpapi.h>
#include <netioapi.h>
// clang-format on

#include <vector>

#include "providers/port/finding/InterfaceTable.h"

namespace providers::port {

/// What a row of the system's says.
Interface interfaceOf(const MIB_IF_ROW2& row);

/// The network interfaces of this machine, to find ports among.
std::vector<Interface> listInterfaces();

/// One of them, with everything.
std::optional<Interface> readInterface(std::uint64_t luid);

}  // namespace providers::port
