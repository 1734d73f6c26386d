#pragma once

#include <memory>

#include "providers/disk/reading/BlockSource.h"

namespace providers::disk {

/// Reads by io_uring from an open file, which it closes; none where the system does not allow that,
/// or the build is without, and then the file stays open. `patience`: for so many seconds it goes
/// on where the system takes no reads at the moment.
std::unique_ptr<BlockSource> makeUringSource(int file, const SourceShape& shape,
                                             double patience = 10);

}  // namespace providers::disk
