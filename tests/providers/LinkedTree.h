#pragma once

#include <filesystem>
#include <string>

#include "tests/providers/FileTree.h"

namespace providers {

/// A folder of files and links, as the system's own are.
class LinkedTree : public FileTree {
 public:
  /// The link leads to `target`, seen from the folder that it is in.
  LinkedTree& link(const std::string& path, const std::string& target) {
    const std::filesystem::path file = std::filesystem::path(root()) / path;
    std::filesystem::create_directories(file.parent_path());
    std::filesystem::remove(file);
    std::filesystem::create_symlink(target, file);
    return *this;
  }
  LinkedTree& remove(const std::string& path) {
    std::filesystem::remove_all(std::filesystem::path(root()) / path);
    return *this;
  }
};

}  // namespace providers
