#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/pcie/finding/Link.h"
#include "providers/pcie/finding/LinkedDisks.h"
#include "providers/pcie/load/DiskLoad.h"

namespace providers::pcie {

/// What became of the reading of devices that is this test's load.
struct LoadReport {
  std::uint64_t reads = 0;          ///< of a device's configuration, over its link
  std::vector<std::string> silent;  ///< addresses that did not answer as they had before
  std::vector<LinkedDisk> disks;    ///< that were to be read
  std::vector<DiskRead> disksRead;  ///< what became of that, in the same order
  double seconds = 0;               ///< that the disks were read for
};

/// What was seen in the course of a test: each link as it was at rest and at the end of the load,
/// with its ends at the time, but with the least width that it had under load; what was counted at
/// each of three times.
struct LinkWatch {
  std::vector<Link> atRest;
  std::vector<Link> underLoad;  ///< the same links in the same order
  AllErrors before;
  AllErrors afterRest;
  AllErrors afterLoad;
  LoadReport load;
};

}  // namespace providers::pcie
