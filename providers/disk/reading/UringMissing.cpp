// Where the build has no liburing.

#include "providers/disk/reading/UringSource.h"

namespace providers::disk {

std::unique_ptr<BlockSource> makeUringSource(int, const SourceShape&, double) { return nullptr; }

}  // namespace providers::disk
