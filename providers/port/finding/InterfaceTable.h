#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "providers/port/finding/Port.h"

namespace providers::port {

enum class InterfaceKind : std::uint8_t {
  Other,  ///< a radio or a modem, and what stands upon others: filters, tunnels, bridges
  Ethernet,
  Loopback
};

/// A row of the system's table of network interfaces, where it has one (Windows). Texts are as
/// whoever set them up left them.
struct Interface {
  std::uint64_t luid = 0;  ///< stays the same as long as the interface does
  std::uint32_t index = 0;
  InterfaceKind kind = InterfaceKind::Other;
  std::string alias;        ///< which the user may change: "Ethernet 2"
  std::string description;  ///< the adapter's
  std::string address;      ///< of the hardware, in the form of Port
  bool hardware = false;
  bool plugged = true;  ///< the adapter is in the machine and at work
  bool on = true;       ///< administratively
  std::optional<bool> connected;
  std::uint64_t sendBits = 0;  ///< a second; 0 or all ones where the driver does not tell
  std::uint64_t receiveBits = 0;
  std::uint64_t inErrors = 0;
  std::uint64_t outErrors = 0;
  std::uint64_t inDiscards = 0;
  std::uint64_t outDiscards = 0;
};

/// The row of that number, as it is now; nothing once the interface is gone.
using ReadInterface = std::function<std::optional<Interface>(std::uint64_t luid)>;

/// The wired ports of hardware among them, those that are switched off too, and the loopback
/// interface.
std::vector<Port> portsAmong(const std::vector<Interface>& interfaces);

/// The port's state at this moment.
PortState readTablePort(const ReadInterface& readInterface, const Port& port);

}  // namespace providers::port
