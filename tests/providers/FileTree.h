#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace providers {

/// A folder of its own with files in it, which goes away with the object.
class FileTree {
 public:
  FileTree()
      : m_root(std::filesystem::temp_directory_path() /
               ("diags-tree-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(m_root);
  }
  FileTree(const FileTree&) = delete;
  FileTree& operator=(const FileTree&) = delete;
  ~FileTree() {
    std::error_code ignored;
    std::filesystem::remove_all(m_root, ignored);
  }

  FileTree& add(const std::string& path, const std::string& content) {
    const std::filesystem::path file = m_root / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << content;
    return *this;
  }
  std::string root() const { return m_root.string(); }

 private:
  const std::filesystem::path m_root;
};

}  // namespace providers
