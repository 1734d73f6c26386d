#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/pcie/finding/Link.h"

namespace providers::pcie {

/// A disk whose data come over links: an NVMe drive, or one of a storage controller.
struct LinkedDisk {
  std::string name;    ///< "nvme0n1"
  std::string node;    ///< "/dev/nvme0n1"
  std::string number;  ///< the device's, "major:minor"
  std::uint64_t bytes = 0;
  std::vector<std::string> chain;  ///< of devices, from the root's own down to the controller
};

/// Those below `sys`, without opening one. Drives whose medium can be taken out are left out, and
/// those that are reached by several ways, as nobody knows which one a read takes.
std::vector<LinkedDisk> findLinkedDisks(const std::string& sys);

/// Whether what is read from the disk comes over the link.
bool comesOver(const Link& link, const LinkedDisk& disk);

}  // namespace providers::pcie
