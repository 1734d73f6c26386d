#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cmpinsp {

/// A file's bytes in memory, which the processes that read the same file share. The file must not
/// be shortened in the meantime: it may be replaced by another one, or removed.
class MappedFile {
 public:
  /// A `path` (UTF-8) at which no file can be read, or an empty one, gives no bytes.
  explicit MappedFile(const std::string& path);
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile();

  std::string_view bytes() const noexcept { return {static_cast<const char*>(m_start), m_size}; }

 private:
  void* m_start = nullptr;
  std::size_t m_size = 0;
};

}  // namespace cmpinsp
