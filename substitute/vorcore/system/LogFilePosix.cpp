#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "substitute/vorcore/system/LogFile.h"

namespace vorcore {
namespace {

/// The first descriptor behind the standard streams.
constexpr int kFirstOwn = 3;

[[noreturn]] void fail(int error) { throw std::system_error(error, std::generic_category()); }

/// The same file by a descriptor that is nobody's standard stream.
int movedAway(int file) {
  if (file >= kFirstOwn) return file;
  const int moved = ::fcntl(file, F_DUPFD_CLOEXEC, kFirstOwn);
  const int error = errno;
  ::close(file);
  if (moved < 0) fail(error);
  return moved;
}

int openRegular(const std::string& path) {
  // Not blocking: a FIFO without a reader would keep the open waiting.
  const int flags = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
  const int opened = ::open(path.c_str(), flags, 0644);
  if (opened < 0) fail(errno);
  const int file = movedAway(opened);
  struct stat state {};
  if (::fstat(file, &state) == 0 && S_ISREG(state.st_mode)) return file;
  ::close(file);
  fail(EINVAL);
}

}  // namespace

LogFile::LogFile(const std::string& path) : m_file(openRegular(path)) {}

LogFile::~LogFile() { ::close(m_file); }

std::error_code LogFile::append(const char* text, std::size_t length) noexcept {
  while (length > 0) {
    const ssize_t written = ::write(m_file, text, length);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return std::error_code(errno, std::generic_category());
    text += written;
    length -= static_cast<std::size_t>(written);
  }
  return {};
}

}  // namespace vorcore
