#if !defined(_WIN32)

#include <fcntl.h>
#include <unistd.h>

#include "history/store/RunLocks.h"

namespace history {
namespace {

/// Of the open file, not of the process: several histories of one process see each other's.
struct flock lockOf(std::int64_t run, short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = static_cast<off_t>(run);
  lock.l_len = 1;
  return lock;
}

}  // namespace

RunLocks::RunLocks(const std::filesystem::path& file) {
  constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NOCTTY | O_NONBLOCK;
  m_file = ::open(file.c_str(), O_RDWR | O_CREAT | kFlags, 0600);
  if (m_file < 0) m_file = ::open(file.c_str(), O_RDONLY | kFlags);
}

RunLocks::~RunLocks() {
  if (m_file >= 0) ::close(static_cast<int>(m_file));
}

bool RunLocks::lock(std::int64_t run) noexcept {
  struct flock wanted = lockOf(run, F_WRLCK);
  return m_file >= 0 && ::fcntl(static_cast<int>(m_file), F_OFD_SETLK, &wanted) == 0;
}

void RunLocks::unlock(std::int64_t run) noexcept {
  struct flock wanted = lockOf(run, F_UNLCK);
  ::fcntl(static_cast<int>(m_file), F_OFD_SETLK, &wanted);
}

bool RunLocks::isTakenByOthers(std::int64_t run) const noexcept {
  struct flock asked = lockOf(run, F_WRLCK);
  return m_file >= 0 && ::fcntl(static_cast<int>(m_file), F_OFD_GETLK, &asked) == 0 &&
         asked.l_type != F_UNLCK;
}

}  // namespace history

#endif
