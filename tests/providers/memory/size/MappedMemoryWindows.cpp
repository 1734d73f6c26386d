#include <windows.h>

#include "tests/providers/memory/size/MappedMemory.h"

namespace providers::memory {

bool isMapped(const void* address) {
  MEMORY_BASIC_INFORMATION about = {};
  return VirtualQuery(address, &about, sizeof about) != 0 && about.State != MEM_FREE;
}

}  // namespace providers::memory
