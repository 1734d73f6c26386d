#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace providers::pcie {

/// Vendor and device.
using DeviceId = std::pair<std::uint16_t, std::uint16_t>;

/// The names of these devices in the first of the files that is there, in the form of `pci.ids`;
/// "8086:1533" for those that it does not have.
std::map<DeviceId, std::string> deviceNames(const std::vector<DeviceId>& wanted,
                                            const std::vector<std::string>& files);

}  // namespace providers::pcie
