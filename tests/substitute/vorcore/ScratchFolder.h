#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace vorcore {

/// A new folder, with a blank and a letter beyond ASCII in its name, that goes with this object.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    m_path = std::filesystem::temp_directory_path() /
             std::filesystem::u8path("vorcore \xC3\xA9 " + std::to_string(random()));
    std::filesystem::create_directories(m_path);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }

  /// The folder's path, UTF-8.
  std::string path() const { return m_path.u8string(); }

  /// Writes a file, making the folders that it lies in.
  void write(const std::string& name, const std::string& content) const {
    const std::filesystem::path file = m_path / std::filesystem::u8path(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
  }

  std::string read(const std::string& name) const {
    std::ifstream file(m_path / std::filesystem::u8path(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }

 private:
  std::filesystem::path m_path;
};

}  // namespace vorcore
