#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace engine {

/// A folder of those in which the system tells about itself, such as /sys. Nothing in it is an
/// error: what cannot be read is empty. Only plain files are read, and none is waited for.
class SystemFolder {
 public:
  explicit SystemFolder(std::string path) : m_path(std::move(path)) {}

  SystemFolder operator/(const std::string& name) const;
  bool has(const std::string& name) const;

  /// At most `most` bytes of its beginning, as they are.
  std::string bytes(const std::string& name, std::size_t most) const;
  /// One text, if it tells something.
  std::string text(const std::string& name) const;
  std::string serial(const std::string& name) const;

  /// What is in it, in the order of their names; numbers within them by their value, so that disk 2
  /// is before disk 10. At most 1024.
  std::vector<std::string> names() const;
  /// The last part of where the link leads.
  std::string targetOf(const std::string& link) const;

 private:
  std::string m_path;
};

}  // namespace engine
