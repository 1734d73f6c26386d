#include <windows.h>

#include "providers/processor/topology/CpuAffinity.h"

namespace providers {

bool bindToCpu(unsigned cpu) {
  constexpr unsigned kGroupSize = 64;
  GROUP_AFFINITY affinity = {};
  affinity.Group = static_cast<WORD>(cpu / kGroupSize);
  affinity.Mask = static_cast<KAFFINITY>(1) << (cpu % kGroupSize);
  return SetThreadGroupAffinity(GetCurrentThread(), &affinity, nullptr) != 0;
}

}  // namespace providers
