#include <sys/mman.h>

#include <cstdint>

#include "tests/providers/memory/size/MappedMemory.h"

namespace providers::memory {

bool isMapped(const void* address) {
  // Tells of whole pages alone.
  constexpr std::uintptr_t kPage = 4096;
  const auto page = reinterpret_cast<std::uintptr_t>(address) / kPage * kPage;
  unsigned char resident = 0;
  return mincore(reinterpret_cast<void*>(page), 1, &resident) == 0;
}

}  // namespace providers::memory
