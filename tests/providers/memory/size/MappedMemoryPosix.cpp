#include <sys/mman.h>

#include <cstdint>
#include <fstream>

#include "tests/providers/memory/size/MappedMemory.h"

namespace providers::memory {

bool isMapped(const void* address) {
  // Tells of whole pages alone.
  constexpr std::uintptr_t kPage = 4096;
  const auto page = reinterpret_cast<std::uintptr_t>(address) / kPage * kPage;
  unsigned char resident = 0;
  return mincore(reinterpret_cast<void*>(page), 1, &resident) == 0;
}

std::size_t residentBytes() {
  constexpr std::size_t kPage = 4096;
  std::size_t mapped = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> mapped >> resident;
  return resident * kPage;
}

}  // namespace providers::memory
