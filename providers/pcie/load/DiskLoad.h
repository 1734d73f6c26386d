#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "providers/pcie/finding/LinkedDisks.h"

namespace providers::pcie {

/// What became of the reading of one disk.
struct DiskRead {
  std::uint64_t bytes = 0;
  std::uint64_t failed = 0;  ///< reads that brought nothing
  std::string problem;       ///< why nothing was read, or what the last failed read met
};

/// Reads disks, all at the same time and as fast as they give; never writes.
class DiskLoad {
 public:
  /// Ends it.
  virtual ~DiskLoad() = default;
  /// What was read so far, of each disk in its order.
  virtual std::vector<DiskRead> sofar() const = 0;
};

using StartLoad = std::function<std::unique_ptr<DiskLoad>(const std::vector<LinkedDisk>&)>;

/// Begins at once, past the system's cache. Where a read does not come back, the end waits for it,
/// but for a few seconds only.
std::unique_ptr<DiskLoad> startDiskLoad(const std::vector<LinkedDisk>& disks);

}  // namespace providers::pcie
