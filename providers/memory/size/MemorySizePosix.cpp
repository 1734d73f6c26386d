#include <sys/resource.h>

#include <algorithm>

#include "providers/memory/size/MemorySize.h"

namespace providers::memory {

namespace {

/// What this process may still map.
void applyAddressLimit(MemorySize& size) {
  rlimit limit = {};
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return;
  const std::uint64_t used = readMappedBytes({});
  const std::uint64_t left = limit.rlim_cur - std::min<std::uint64_t>(limit.rlim_cur, used);
  size.usable = std::min<std::uint64_t>(size.usable, limit.rlim_cur);
  size.available = std::min(size.available, left);
}

}  // namespace

MemorySize queryMemorySize() {
  MemorySize size = readMemorySize({});
  applyAddressLimit(size);
  return size;
}

}  // namespace providers::memory
