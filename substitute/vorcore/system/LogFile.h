#pragma once

#include <cstddef>
#include <string>
#include <system_error>

namespace vorcore {

/// A file that lines are appended to, each with one call of the system, so that nothing waits in a
/// buffer when the process is killed, and several processes may write to one file.
class LogFile {
 public:
  /// Opens the file at `path` (UTF-8), and makes it where it is missing, but no folder. Refuses a
  /// link, through which somebody else would choose the file, and whatever is no regular file.
  /// Never takes the place of a standard stream that is closed. Throws `std::system_error`.
  explicit LogFile(const std::string& path);
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;
  ~LogFile();

  /// Appends all of `text`, or says why it could not.
  std::error_code append(const char* text, std::size_t length) noexcept;

 private:
#if defined(_WIN32)
  void* m_file;
#else
  int m_file;
#endif
};

}  // namespace vorcore
