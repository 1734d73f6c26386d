#include <windows.h>

#include <algorithm>

#include "providers/common/WindowsText.h"
#include "providers/processor/topology/CpuTopology.h"

namespace providers {

namespace {

// A CPU's number is its processor group times 64, and its place within the group.
constexpr unsigned kGroupSize = 64;

std::vector<char> topology(LOGICAL_PROCESSOR_RELATIONSHIP relation) {
  DWORD size = 0;
  GetLogicalProcessorInformationEx(relation, nullptr, &size);
  std::vector<char> buffer(size);
  auto* first = reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(buffer.data());
  if (size == 0 || !GetLogicalProcessorInformationEx(relation, first, &size)) return {};
  return buffer;
}

/// The CPUs of each package or core.
std::vector<std::vector<unsigned>> cpuSets(LOGICAL_PROCESSOR_RELATIONSHIP relation) {
  std::vector<std::vector<unsigned>> sets;
  const std::vector<char> buffer = topology(relation);
  for (std::size_t offset = 0; offset < buffer.size();) {
    const auto* entry =
        reinterpret_cast<const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(buffer.data() + offset);
    std::vector<unsigned> cpus;
    for (WORD i = 0; i < entry->Processor.GroupCount; ++i) {
      const GROUP_AFFINITY& group = entry->Processor.GroupMask[i];
      for (unsigned bit = 0; bit < kGroupSize; ++bit)
        if (group.Mask >> bit & 1) cpus.push_back(group.Group * kGroupSize + bit);
    }
    sets.push_back(std::move(cpus));
    offset += entry->Size;
  }
  return sets;
}

/// The number of the core that has the thread.
unsigned coreOf(const std::vector<std::vector<unsigned>>& cores, unsigned cpu) {
  const auto core =
      std::find_if(cores.begin(), cores.end(), [cpu](const std::vector<unsigned>& threads) {
        return std::find(threads.begin(), threads.end(), cpu) != threads.end();
      });
  return static_cast<unsigned>(core - cores.begin());
}

/// Whether this process may use the CPU. A process that spans several groups may use all of them.
bool isAllowed(unsigned cpu) {
  USHORT groups[64] = {};
  USHORT count = 64;
  if (!GetProcessGroupAffinity(GetCurrentProcess(), &count, groups) || count != 1) return true;
  DWORD_PTR process = 0;
  DWORD_PTR system = 0;
  if (!GetProcessAffinityMask(GetCurrentProcess(), &process, &system)) return true;
  return cpu / kGroupSize == groups[0] && (process >> (cpu % kGroupSize) & 1) != 0;
}

const wchar_t* const kProcessorKey = L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

std::string modelName() {
  wchar_t name[256] = {};
  DWORD size = sizeof name - sizeof name[0];
  if (RegGetValueW(HKEY_LOCAL_MACHINE, kProcessorKey, L"ProcessorNameString", RRF_RT_REG_SZ,
                   nullptr, name, &size) != ERROR_SUCCESS)
    return {};
  return toUtf8(name);
}

unsigned clockRate() {
  DWORD megahertz = 0;
  DWORD size = sizeof megahertz;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, kProcessorKey, L"~MHz", RRF_RT_REG_DWORD, nullptr,
                   &megahertz, &size) != ERROR_SUCCESS)
    return 0;
  return static_cast<unsigned>(megahertz);
}

}  // namespace

std::vector<CpuCache> queryCpuCaches(unsigned cpu) {
  std::vector<CpuCache> caches;
  const std::vector<char> buffer = topology(RelationCache);
  for (std::size_t offset = 0; offset < buffer.size();) {
    const auto* entry =
        reinterpret_cast<const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(buffer.data() + offset);
    offset += entry->Size;
    const CACHE_RELATIONSHIP& cache = entry->Cache;
    const bool isOurs = cache.GroupMask.Group == cpu / kGroupSize &&
                        (cache.GroupMask.Mask >> (cpu % kGroupSize) & 1) != 0;
    if (!isOurs || cache.Type == CacheInstruction || cache.CacheSize == 0) continue;
    unsigned threads = 0;
    for (unsigned bit = 0; bit < kGroupSize; ++bit)
      threads += static_cast<unsigned>(cache.GroupMask.Mask >> bit & 1);
    caches.push_back({cache.Level, cache.CacheSize, threads});
  }
  std::sort(caches.begin(), caches.end(),
            [](const CpuCache& left, const CpuCache& right) { return left.level < right.level; });
  return caches;
}

std::vector<CpuPackage> queryCpuPackages() {
  const auto cores = cpuSets(RelationProcessorCore);
  std::vector<CpuPackage> packages;
  for (std::vector<unsigned>& cpus : cpuSets(RelationProcessorPackage)) {
    CpuPackage package;
    package.number = static_cast<unsigned>(packages.size());
    package.model = modelName();
    package.megahertz = clockRate();
    std::sort(cpus.begin(), cpus.end());
    package.online = cpus;
    for (const unsigned cpu : cpus) package.coreIds.push_back(coreOf(cores, cpu));
    std::copy_if(cpus.begin(), cpus.end(), std::back_inserter(package.cpus), isAllowed);
    package.cores = static_cast<unsigned>(
        std::count_if(cores.begin(), cores.end(), [&cpus](const std::vector<unsigned>& core) {
          return !core.empty() && std::binary_search(cpus.begin(), cpus.end(), core.front());
        }));
    packages.push_back(std::move(package));
  }
  return packages;
}

}  // namespace providers
