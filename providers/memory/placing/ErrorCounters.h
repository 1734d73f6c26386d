#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace providers::memory {

/// What a memory controller has counted of one module since the machine started.
struct ErrorCounter {
  std::string place;  ///< "mc0/dimm3"
  std::string label;  ///< as the maker of the board names it: "CPU_SrcID#0_Ha#0_Chan#1_DIMM#0"
  std::uint64_t corrected = 0;
  std::uint64_t uncorrected = 0;

  std::string name() const { return label.empty() ? place : label; }
};

/// Those below `root`/sys/devices/system/edac, ordered by their place; of modules, or where there
/// are none, of rows of chips. Empty where no driver counts.
std::vector<ErrorCounter> readErrorCounters(const std::string& root);

/// What has been counted since `before`, module by module; those that stand still are left out.
std::vector<ErrorCounter> risen(const std::vector<ErrorCounter>& before,
                                const std::vector<ErrorCounter>& after);

}  // namespace providers::memory
