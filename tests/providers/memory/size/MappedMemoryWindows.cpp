#include <windows.h>
// Needs the one before.
#include <psapi.h>

#include "tests/providers/memory/size/MappedMemory.h"

namespace providers::memory {

bool isMapped(const void* address) {
  MEMORY_BASIC_INFORMATION about = {};
  return VirtualQuery(address, &about, sizeof about) != 0 && about.State == MEM_COMMIT;
}

std::size_t residentBytes() {
  PROCESS_MEMORY_COUNTERS counters = {};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.WorkingSetSize;
}

}  // namespace providers::memory
