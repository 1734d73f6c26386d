#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <optional>
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

/// The value of a line such as "MemTotal:  16314748 kB", in bytes.
std::uint64_t memInfo(const std::string& root, const std::string& name) {
  constexpr std::uint64_t kKilobyte = 1024;
  std::ifstream file(root + "/proc/meminfo");
  std::string line;
  while (std::getline(file, line)) {
    std::istringstream words(line);
    std::string label, value;
    words >> label >> value;
    if (label == name + ":") return number(value).value_or(0) * kKilobyte;
  }
  return 0;
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
void applyGroup(MemorySize& size, std::optional<std::uint64_t> limit, std::uint64_t used) {
  if (!limit) return;
  size.usable = std::min(size.usable, *limit);
  size.available = std::min(size.available, *limit - std::min(*limit, used));
}

}  // namespace

MemorySize readMemorySize(const std::string& root) {
  MemorySize size;
  size.installed = size.usable = memInfo(root, "MemTotal");
  size.available = memInfo(root, "MemAvailable");
  for (const std::string& folder : controlGroupFolders(root, "memory")) {
    const auto apply = [&](const char* limit, const char* used, const char* files) {
      const std::uint64_t all = numberInFile(folder + used).value_or(0);
      applyGroup(size, numberInFile(folder + limit),
                 all - std::min(all, reclaimable(folder, files)));
    };
    apply("memory.max", "memory.current", "inactive_file");
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
