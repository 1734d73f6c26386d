#include <windows.h>

#include "providers/memory/size/Processors.h"

namespace providers::memory {

namespace {

constexpr unsigned kGroupSize = 64;

}  // namespace

std::vector<Processor> usableProcessors() {
  DWORD_PTR process = 0;
  DWORD_PTR system = 0;
  std::vector<Processor> list;
  // On a machine of several groups the masks are 0, and this process may run in all of them.
  if (GetProcessAffinityMask(GetCurrentProcess(), &process, &system) && process != 0) {
    for (unsigned bit = 0; bit < kGroupSize; ++bit)
      if (process >> bit & 1) list.push_back(bit);
    return list;
  }
  for (WORD group = 0; group < GetActiveProcessorGroupCount(); ++group)
    for (DWORD one = 0; one < GetActiveProcessorCount(group); ++one)
      list.push_back(group * kGroupSize + one);
  if (list.empty()) list.push_back(0);
  return list;
}

void takePlace(Processor processor) {
  GROUP_AFFINITY affinity = {};
  affinity.Group = static_cast<WORD>(processor / kGroupSize);
  affinity.Mask = static_cast<KAFFINITY>(1) << (processor % kGroupSize);
  SetThreadGroupAffinity(GetCurrentThread(), &affinity, nullptr);
}

std::size_t sharedCacheBytes() {
  constexpr std::size_t kMore = std::size_t{64} << 20;  // than most have
  return kMore;
}

}  // namespace providers::memory
