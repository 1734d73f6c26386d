#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace support {

/// The installation as the runner sees it; stands behind `TOSSpecific`. A call is recorded as
/// `TOSSpecific.GetFileSize("...")` and fails as `Script::failOn` says.
class FakeOS {
 public:
  static FakeOS& current();
  void clear();

  std::string rootPath = "/opt/diags";
  std::string biosID = "ABE1XX";
  bool isOEM = false;

  /// The path of the data file `name`, as the runner forms it.
  std::string dataPath(const std::string& name) const;

  /// Says a size that is not that of the file, or one for a file that does not open.
  void setSize(const std::string& path, std::uint64_t size) { m_sizes[path] = size; }
  /// The size; throws `TVORException` (not found) for a file that is not there.
  std::uint64_t sizeOf(const std::string& path) const;

 private:
  std::map<std::string, std::uint64_t> m_sizes;
};

}  // namespace support
