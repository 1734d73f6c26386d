#pragma once

#include <cstdint>
#include <string>

namespace cmpinsp {

/// What tells that a file is still the one that was read, without reading it again. Packages give
/// every file of theirs the same old time of modification, so that an update may leave size and
/// that time as they were; the time of the last change of the entry itself tells it then.
struct SourceStamp {
  std::string path;  ///< UTF-8
  bool exists = false;
  std::uint64_t size = 0;
  std::uint64_t modified = 0;  ///< as fine as the file system keeps it
  std::uint64_t changed = 0;   ///< of the entry; on Windows when the file was made

  bool operator==(const SourceStamp& other) const noexcept {
    return exists == other.exists && size == other.size && modified == other.modified &&
           changed == other.changed && path == other.path;
  }
};

/// The stamp that the file at `path` has now.
SourceStamp stampOf(const std::string& path);

/// Equal for two paths that lead to one file, as symbolic links do, and on Windows other spellings.
/// Of a file that is missing it is the path.
std::string identityOf(const std::string& path);

}  // namespace cmpinsp
