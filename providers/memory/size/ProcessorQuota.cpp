#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "providers/memory/size/ControlGroups.h"
#include "providers/memory/size/Processors.h"

namespace providers::memory {

namespace {

/// "max 100000", or "150000 100000": so much time in each period.
std::size_t quotaOf(std::istream& file) {
  double time = 0, period = 0;
  if (!(file >> time >> period) || time <= 0 || period <= 0) return 0;
  return std::max<std::size_t>(1, static_cast<std::size_t>(std::llround(time / period)));
}

std::size_t quotaIn(const std::string& folder) {
  std::ifstream second(folder + "cpu.max");
  if (second) return quotaOf(second);
  std::ifstream time(folder + "cpu.cfs_quota_us"), period(folder + "cpu.cfs_period_us");
  std::stringstream both;
  if (time && period) both << time.rdbuf() << ' ' << period.rdbuf();
  return quotaOf(both);
}

}  // namespace

std::vector<Processor> spreadOver(const std::vector<Processor>& list, std::size_t count) {
  std::vector<Processor> chosen;
  for (std::size_t i = 0; i < count; ++i) chosen.push_back(list[i * list.size() / count]);
  return chosen;
}

std::size_t processorQuota(const std::string& root) {
  std::size_t least = 0;
  for (const std::string& folder : controlGroupFolders(root, "cpu")) {
    const std::size_t quota = quotaIn(folder);
    if (quota > 0) least = least ? std::min(least, quota) : quota;
  }
  return least;
}

}  // namespace providers::memory
