#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>

#include "providers/memory/size/Processors.h"

namespace providers::memory {

namespace {

constexpr std::size_t kBits = 8 * sizeof(unsigned long);
constexpr std::size_t kMostProcessors = 8192;

std::vector<Processor> allowedProcessors() {
  std::vector<unsigned long> mask(kMostProcessors / kBits);
  auto* const set = reinterpret_cast<cpu_set_t*>(mask.data());
  const std::size_t bytes = mask.size() * sizeof(unsigned long);
  std::vector<Processor> list;
  if (sched_getaffinity(0, bytes, set) != 0) return list;
  for (Processor one = 0; one < kMostProcessors; ++one)
    if (CPU_ISSET_S(one, bytes, set)) list.push_back(one);
  return list;
}

}  // namespace

std::vector<Processor> usableProcessors() {
  std::vector<Processor> list = allowedProcessors();
  if (list.empty()) list.push_back(0);
  const std::size_t quota = processorQuota({});
  return quota > 0 && quota < list.size() ? spreadOver(list, quota) : list;
}

void takePlace(Processor processor) {
  std::vector<unsigned long> mask(processor / kBits + 1);
  auto* const set = reinterpret_cast<cpu_set_t*>(mask.data());
  const std::size_t bytes = mask.size() * sizeof(unsigned long);
  CPU_SET_S(processor, bytes, set);
  sched_setaffinity(0, bytes, set);
  // Whatever policy this process was started with: a page comes from the node of who touches it
  // first.
#ifdef SYS_set_mempolicy
  constexpr int kPreferred = 1;  // with no nodes named: the one that the thread runs on
  syscall(SYS_set_mempolicy, kPreferred, nullptr, 0UL);
#endif
}

std::size_t queryCacheBytes(const std::vector<Processor>& processors) {
  constexpr long kUnknown = 64L << 20;  // more than most have
  const std::size_t told = readCacheBytes({}, processors);
  if (told > 0) return told;
  long one = 0;
#ifdef _SC_LEVEL3_CACHE_SIZE
  one = std::max(sysconf(_SC_LEVEL3_CACHE_SIZE), sysconf(_SC_LEVEL2_CACHE_SIZE));
#endif
  // Nobody says how many share it.
  return static_cast<std::size_t>(one > 0 ? one : kUnknown) * processors.size();
}

}  // namespace providers::memory
