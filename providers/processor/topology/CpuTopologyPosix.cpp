#include <sched.h>
#include <unistd.h>

#include <vector>

#include "providers/processor/topology/CpuTopology.h"

namespace providers {

namespace {

/// The CPUs that this process may use. The system wants room for every CPU that it could have.
std::set<unsigned> allowedCpus() {
  constexpr std::size_t kMostCpus = 65536;
  constexpr std::size_t kInWord = 8 * sizeof(unsigned long);
  std::vector<unsigned long> mask(kMostCpus / kInWord);
  auto* set = reinterpret_cast<cpu_set_t*>(mask.data());
  const std::size_t bytes = mask.size() * sizeof(unsigned long);
  std::set<unsigned> cpus;
  if (sched_getaffinity(getpid(), bytes, set) != 0) return cpus;
  for (std::size_t word = 0; word < mask.size(); ++word) {
    if (mask[word] == 0) continue;  // nearly all of them, and each listing reads this
    for (std::size_t cpu = word * kInWord; cpu < (word + 1) * kInWord; ++cpu) {
      if (CPU_ISSET_S(cpu, bytes, set)) cpus.insert(static_cast<unsigned>(cpu));
    }
  }
  return cpus;
}

}  // namespace

std::vector<CpuPackage> queryCpuPackages() { return readCpuPackages({}, allowedCpus()); }

std::vector<CpuCache> queryCpuCaches(unsigned cpu) { return readCpuCaches({}, cpu); }

}  // namespace providers
