#include <functional>

#include "providers/memory/size/ControlGroups.h"
#include "providers/memory/size/MemoryTurn.h"

namespace providers::memory {

std::string turnName(const MemorySize& size, const std::string& root) {
  const std::string machine = "diagsrunner-memory";
  if (size.usable >= size.installed) return machine;
  const auto folders = controlGroupFolders(root, "memory");
  if (folders.empty()) return machine;
  // A path may be longer than a name.
  return machine + "-" + std::to_string(std::hash<std::string>()(folders.front()));
}

}  // namespace providers::memory
