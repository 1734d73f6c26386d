#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "providers/disk/reading/BlockSource.h"

namespace providers::disk {

/// Reads at a place, waiting for the end; the slot of the answer is not looked at. Called on many
/// threads. Its copies' end closes the file.
using ReadAt = std::function<ReadAnswer(const Extent& extent, std::uint8_t* into)>;

/// Reads with a thread for each slot, or with fewer where the system allows no more; none where it
/// allows none.
std::unique_ptr<BlockSource> makeThreadSource(ReadAt readAt, const SourceShape& shape);

}  // namespace providers::disk
