#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cmpinsp {

/// A file's bytes in memory, which the processes that read the same file share. The file must not
/// be shortened in the meantime: it may be replaced by another one, or removed.
class MappedFile {
 public:
  /// A `path` (UTF-8) at which no file can be read, or an empty one, gives no bytes. Nor does one
  /// that others own or can write: what was found out about the path may no longer be true of the
  /// file that is opened there. On Windows the examination of the path has to do.
  explicit MappedFile(const std::string& path);
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile();

  /// True where that is why there are no bytes.
  bool isForeign() const noexcept { return m_isForeign; }

  std::string_view bytes() const noexcept { return {static_cast<const char*>(m_start), m_size}; }

 private:
  void* m_start = nullptr;
  std::size_t m_size = 0;
  bool m_isForeign = false;
};

}  // namespace cmpinsp
