#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace engine::counters {

/// A folder with what a system tells of itself, in which tests count errors.
class MadeUpMachine {
 public:
  MadeUpMachine() {
    std::string pattern = (std::filesystem::temp_directory_path() / "machineXXXXXX").string();
    m_root = mkdtemp(pattern.data());
  }
  MadeUpMachine(const MadeUpMachine&) = delete;
  MadeUpMachine& operator=(const MadeUpMachine&) = delete;
  ~MadeUpMachine() { std::filesystem::remove_all(m_root); }

  std::string root() const { return m_root.string(); }
  std::filesystem::path path(const std::string& name) const { return m_root / name; }

  void write(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories(path(name).parent_path());
    std::ofstream(path(name), std::ios::binary) << content;
  }
  void append(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories(path(name).parent_path());
    std::ofstream(path(name), std::ios::binary | std::ios::app) << content;
  }
  void link(const std::string& name, const std::string& target) const {
    std::filesystem::create_directories(path(name).parent_path());
    std::filesystem::create_symlink(target, path(name));
  }

 private:
  std::filesystem::path m_root;
};

}  // namespace engine::counters
