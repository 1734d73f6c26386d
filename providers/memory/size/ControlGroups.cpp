#include "providers/memory/size/ControlGroups.h"

#include <fstream>
#include <sstream>

namespace providers::memory {

namespace {

bool lists(const std::string& controllers, const std::string& wanted) {
  std::istringstream list(controllers);
  std::string name;
  while (std::getline(list, name, ','))
    if (name == wanted) return true;
  return false;
}

void addUpwards(std::vector<std::string>& folders, const std::string& top, std::string group) {
  while (true) {
    folders.push_back(top + (group == "/" ? "" : group) + "/");
    if (group.empty() || group == "/") return;
    group.erase(group.rfind('/'));
  }
}

}  // namespace

std::vector<std::string> controlGroupFolders(const std::string& root,
                                             const std::string& controller) {
  std::vector<std::string> folders;
  std::ifstream groups(root + "/proc/self/cgroup");
  std::string line;
  while (std::getline(groups, line)) {  // hierarchy:controllers:group
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first + 1);
    if (first == std::string::npos || second == std::string::npos) continue;
    const std::string controllers = line.substr(first + 1, second - first - 1);
    const std::string group = line.substr(second + 1);
    if (!group.empty() && group.front() != '/') continue;
    const std::string top = root + "/sys/fs/cgroup";
    if (controllers.empty()) addUpwards(folders, top, group);
    if (lists(controllers, controller)) addUpwards(folders, top + "/" + controllers, group);
  }
  return folders;
}

}  // namespace providers::memory
