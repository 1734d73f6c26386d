#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

namespace cmpinsp {

/// A folder of this test's own, gone with it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    static int count = 0;
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    m_path = std::filesystem::temp_directory_path() /
             ("cmpinsp-" + std::to_string(now) + "-" + std::to_string(++count));
    std::filesystem::create_directories(m_path);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(m_path, error);
  }

  /// Writes a file, in folders that are made as needed, and returns its path.
  std::string write(const std::string& name, const std::string& content) const {
    const std::filesystem::path file = m_path / std::filesystem::u8path(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file.u8string();
  }

  const std::filesystem::path& path() const noexcept { return m_path; }
  std::string text() const { return m_path.u8string(); }

 private:
  std::filesystem::path m_path;
};

}  // namespace cmpinsp
