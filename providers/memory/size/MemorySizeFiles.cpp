#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <string>

#include "providers/memory/size/ControlGroups.h"
#include "providers/memory/size/MemorySize.h"

namespace providers::memory {

namespace {

std::optional<std::uint64_t> number(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos)
    return std::nullopt;  // "max" stands for no limit
  return std::strtoull(text.c_str(), nullptr, 10);
}

std::optional<std::uint64_t> numberInFile(const std::string& path) {
  std::ifstream file(path);
  std::string word;
  file >> word;
  return number(word);
}

/// The value of a line such as "MemTotal:  16314748 kB", or of a node "Node 0 MemTotal:  8157374
/// kB", in bytes.
std::uint64_t memInfo(const std::string& path, const std::string& name) {
  constexpr std::uint64_t kKilobyte = 1024;
  std::ifstream file(path);
  std::string word;
  while (file >> word)
    if (word == name + ":") return file >> word ? number(word).value_or(0) * kKilobyte : 0;
  return 0;
}

/// The numbers of a list such as "0-1,4".
std::set<unsigned long> listed(const std::string& text) {
  constexpr unsigned long kMost = 4096;  // against a list that makes no sense
  std::set<unsigned long> numbers;
  std::istringstream list(text);
  std::string range;
  while (std::getline(list, range, ',')) {
    char* end = nullptr;
    const unsigned long first = std::strtoul(range.c_str(), &end, 10);
    if (end == range.c_str()) continue;
    const unsigned long last = *end == '-' ? std::strtoul(end + 1, nullptr, 10) : first;
    for (unsigned long one = first; one <= last && one < kMost; ++one) numbers.insert(one);
  }
  return numbers;
}

std::string wordAfter(const std::string& path, const std::string& label) {
  std::ifstream file(path);
  std::string word;
  while (file >> word)
    if (word == label) return file >> word ? word : std::string();
  return {};
}

/// Lowers the sizes to what the NUMA nodes have that this process may have memory of, where those
/// are not all: of a node, nobody tells more than what is free, and which files nobody read lately.
void applyNodes(MemorySize& size, const std::string& root) {
  const std::string folder = root + "/sys/devices/system/node/";
  std::string all;
  std::ifstream(folder + "has_memory") >> all;
  const std::set<unsigned long> nodes = listed(all);
  const std::set<unsigned long> allowed =
      listed(wordAfter(root + "/proc/self/status", "Mems_allowed_list:"));
  if (allowed.empty() || std::includes(allowed.begin(), allowed.end(), nodes.begin(), nodes.end()))
    return;
  MemorySize sum;
  for (const unsigned long node : nodes) {
    if (allowed.count(node) == 0) continue;
    const std::string info = folder + "node" + std::to_string(node) + "/meminfo";
    sum.usable += memInfo(info, "MemTotal");
    sum.available += memInfo(info, "MemFree") + memInfo(info, "Inactive(file)");
  }
  size.usable = std::min(size.usable, sum.usable);
  size.available = std::min(size.available, sum.available);
}

/// What a control group counts as used, but gives up as soon as somebody needs it: files that were
/// read some time ago.
std::uint64_t reclaimable(const std::string& folder, const std::string& name) {
  std::ifstream file(folder + "memory.stat");
  std::string label, value;
  while (file >> label >> value)
    if (label == name) return number(value).value_or(0);
  return 0;
}

/// Lowers the sizes to what a control group leaves.
void applyGroup(MemorySize& size, std::uint64_t limit, std::uint64_t used) {
  size.usable = std::min(size.usable, limit);
  size.available = std::min(size.available, limit - std::min(limit, used));
}

}  // namespace

MemorySize readMemorySize(const std::string& root) {
  MemorySize size;
  size.installed = size.usable = memInfo(root + "/proc/meminfo", "MemTotal");
  size.available = memInfo(root + "/proc/meminfo", "MemAvailable");
  applyNodes(size, root);
  for (const std::string& folder : controlGroupFolders(root, "memory")) {
    const auto apply = [&](const char* limit, const char* used, const char* files) {
      const std::optional<std::uint64_t> most = numberInFile(folder + limit);
      if (!most || *most >= size.installed) return;  // no limit; and who uses how much takes time
      const std::uint64_t all = numberInFile(folder + used).value_or(0);
      applyGroup(size, *most, all - std::min(all, reclaimable(folder, files)));
    };
    apply("memory.max", "memory.current", "inactive_file");
    // Who takes more than that is slowed down until the group has less, which locked pages prevent.
    apply("memory.high", "memory.current", "inactive_file");
    apply("memory.limit_in_bytes", "memory.usage_in_bytes", "total_inactive_file");
  }
  return size;
}

std::uint64_t readMappedBytes(const std::string& root) {
  constexpr std::uint64_t kPage = 4096;
  std::ifstream file(root + "/proc/self/statm");
  std::string pages;
  file >> pages;
  return number(pages).value_or(0) * kPage;
}

}  // namespace providers::memory
