#include <sched.h>

#include <vector>

#include "providers/processor/topology/CpuAffinity.h"

namespace providers {

bool bindToCpu(unsigned cpu) {
  constexpr std::size_t kBits = 8 * sizeof(unsigned long);
  std::vector<unsigned long> mask(cpu / kBits + 1);
  auto* set = reinterpret_cast<cpu_set_t*>(mask.data());
  const std::size_t bytes = mask.size() * sizeof(unsigned long);
  CPU_SET_S(cpu, bytes, set);
  return sched_setaffinity(0, bytes, set) == 0;
}

}  // namespace providers
