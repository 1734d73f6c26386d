#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "providers/memory/MemorySize.h"

namespace providers {

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

/// Lowers the sizes to what a control group leaves.
void applyGroup(MemorySize& size, std::optional<std::uint64_t> limit,
                std::optional<std::uint64_t> used) {
  if (!limit) return;
  size.usable = std::min(size.usable, *limit);
  size.available = std::min(size.available, *limit - std::min(*limit, used.value_or(0)));
}

/// Goes from the group of this process up to the top: each group on the way has its own limit.
void applyGroups(MemorySize& size, const std::string& top, std::string group,
                 const std::string& limitFile, const std::string& usedFile) {
  while (true) {
    std::string folder = top;
    if (group != "/") folder += group;
    folder += "/";
    applyGroup(size, numberInFile(folder + limitFile), numberInFile(folder + usedFile));
    if (group.empty() || group == "/") return;
    group.erase(group.rfind('/'));
  }
}

bool lists(const std::string& controllers, const std::string& wanted) {
  std::istringstream list(controllers);
  std::string name;
  while (std::getline(list, name, ','))
    if (name == wanted) return true;
  return false;
}

}  // namespace

MemorySize readMemorySize(const std::string& root) {
  MemorySize size;
  size.installed = size.usable = memInfo(root, "MemTotal");
  size.available = memInfo(root, "MemAvailable");
  std::ifstream groups(root + "/proc/self/cgroup");
  std::string line;
  while (std::getline(groups, line)) {  // hierarchy:controllers:group
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first + 1);
    if (first == std::string::npos || second == std::string::npos) continue;
    const std::string controllers = line.substr(first + 1, second - first - 1);
    const std::string group = line.substr(second + 1);
    const std::string top = root + "/sys/fs/cgroup";
    if (controllers.empty()) applyGroups(size, top, group, "memory.max", "memory.current");
    if (lists(controllers, "memory"))
      applyGroups(size, top + "/memory", group, "memory.limit_in_bytes", "memory.usage_in_bytes");
  }
  return size;
}

}  // namespace providers
