#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace providers::pcie {

/// The addresses of the PCI devices on the way to what a link of sysfs leads to, from the root's
/// own device down: what its target has since the last root ("pci0000:00").
std::vector<std::string> addressesIn(const std::filesystem::path& link);

}  // namespace providers::pcie
