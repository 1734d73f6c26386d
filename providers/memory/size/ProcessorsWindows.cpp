#include <windows.h>

#include <algorithm>
#include <cstddef>

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

std::size_t queryCacheBytes(const std::vector<Processor>& processors) {
  constexpr std::size_t kUnknown = std::size_t{64} << 20;  // more than most have
  DWORD size = 0;
  GetLogicalProcessorInformationEx(RelationCache, nullptr, &size);
  std::vector<char> buffer(size);
  auto* const first = reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(buffer.data());
  if (size == 0 || !GetLogicalProcessorInformationEx(RelationCache, first, &size)) return kUnknown;
  std::size_t bytes = 0;
  for (std::size_t offset = 0; offset < size;) {
    const auto* const entry =
        reinterpret_cast<const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(buffer.data() + offset);
    offset += entry->Size;
    const CACHE_RELATIONSHIP& cache = entry->Cache;
    const bool isTheirs =
        std::any_of(processors.begin(), processors.end(), [&cache](Processor one) {
          return cache.GroupMask.Group == one / kGroupSize &&
                 (cache.GroupMask.Mask >> (one % kGroupSize) & 1) != 0;
        });
    if (isTheirs && cache.Type != CacheInstruction) bytes += cache.CacheSize;
  }
  return bytes > 0 ? bytes : kUnknown;
}

}  // namespace providers::memory
