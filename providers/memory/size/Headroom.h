#pragma once

#include "providers/memory/size/MemorySize.h"

namespace providers::memory {

/// How much of what is available is left to others while memory is tested: 64 MiB for this process,
/// for who watches it and for commands that somebody enters meanwhile, and a fiftieth for the
/// tables of the tested pages (a 512th) and for whatever grows. Never more than a tenth: on a small
/// machine too, nine tenths are tested.
std::uint64_t headroom(std::uint64_t available);

/// What can be tested at most, in whole mebibytes.
std::uint64_t testableBytes(const MemorySize& size);

/// What a run is to go over, in whole mebibytes, one at least: `wanted` bytes and no fewer, or
/// where that is 0, so many percent of what can be tested.
std::uint64_t askedBytes(const MemorySize& size, std::uint64_t wanted, unsigned percent);

}  // namespace providers::memory
