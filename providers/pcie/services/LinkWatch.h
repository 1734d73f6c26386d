#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/pcie/finding/Link.h"

namespace providers::pcie {

/// What became of the reading of devices that is this test's load.
struct LoadReport {
  std::uint64_t reads = 0;          ///< of a device's configuration, over its link
  std::vector<std::string> silent;  ///< addresses that did not answer as they had before
};

/// What was seen in the course of a test: each link as it was at rest and after the load, with its
/// ends at the time; what was counted at each of three times.
struct LinkWatch {
  std::vector<Link> atRest;
  std::vector<Link> underLoad;  ///< the same links in the same order
  AllErrors before;
  AllErrors afterRest;
  AllErrors afterLoad;
  LoadReport load;
};

}  // namespace providers::pcie
