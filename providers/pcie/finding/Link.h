#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace providers::pcie {

/// Speeds are in tenths of GT/s, so that 2.5 and 8.0 are whole numbers.
struct LinkSide {
  std::optional<unsigned> width;
  std::optional<unsigned> speed;
  std::optional<unsigned> mostWidth;
  std::optional<unsigned> mostSpeed;
};

/// Where a link ends: a device, or the port of a root complex or a switch. What the system does not
/// tell, or tells of no link, is empty.
struct LinkEnd {
  std::string address;  ///< "0000:02:00.0"
  LinkSide side;
};

/// A device and the port that it is linked to.
struct Link {
  LinkEnd device;
  LinkEnd port;
  std::optional<unsigned> allowedSpeed;  ///< what the port was told to go to, by the firmware
  std::uint16_t vendorId = 0;
  std::uint16_t deviceId = 0;
  std::uint32_t deviceClass = 0;
  std::string slot;  ///< as the board calls it; empty when it does not
};

/// What a link should have: what both its ends can.
std::optional<unsigned> expectedWidth(const Link& link);
std::optional<unsigned> expectedSpeed(const Link& link);

/// What a device has counted of one severity, by the system's names: "BadTLP".
using ErrorCounts = std::map<std::string, std::uint64_t>;

/// What one device has counted (advanced error reporting).
struct DeviceErrors {
  ErrorCounts corrected;
  ErrorCounts nonfatal;
  ErrorCounts fatal;
  bool unreadable = false;  ///< it has counters, and one of them cannot be read
};

/// By address; devices without counters are not in it.
using AllErrors = std::map<std::string, DeviceErrors>;

}  // namespace providers::pcie
