#if !defined(_WIN32)

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "history/HistoryError.h"
#include "history/StateDirectory.h"
#include "text/SafeText.h"

namespace history {
namespace {

[[noreturn]] void fail(const std::filesystem::path& path, const char* what) {
  const int code = errno;
  throw HistoryError(text::visible(path.u8string()) + " " + what + ": " + std::strerror(code));
}

/// What was made in the folder is there after a power cut, too.
void keepEntries(const std::filesystem::path& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return;
  ::fsync(handle);
  ::close(handle);
}

/// Some systems refuse to make a folder that is there already for want of the right to.
bool mayBeThere(int code) { return code == EACCES || code == EROFS; }

/// Where it leads would be written to with the rights of whoever runs the tests, root for instance.
void refuseLinkOfOthers(const std::filesystem::path& file) {
  struct stat facts {};
  if (::lstat(file.c_str(), &facts) != 0 || !S_ISLNK(facts.st_mode)) return;
  if (facts.st_uid == 0 || facts.st_uid == ::geteuid()) return;
  throw HistoryError(text::visible(file.u8string()) + " is a link that another user has made");
}

}  // namespace

void makeStateDirectory(const std::filesystem::path& directory) {
  std::filesystem::path made;
  std::filesystem::path refused;
  int reason = 0;
  for (const std::filesystem::path& part : directory) {
    made /= part;
    // With these rights from the start: nobody else looks in between.
    if (::mkdir(made.c_str(), 0700) == 0 || errno == EEXIST) continue;
    // What is missing below a folder that could not be made is no reason of its own.
    if (errno == ENOENT && reason != 0) break;
    refused = made;
    reason = errno;
    if (!mayBeThere(reason)) break;
  }
  std::error_code failure;
  if (std::filesystem::is_directory(directory, failure)) return;
  if (reason != 0) {
    errno = reason;
    fail(refused, "cannot be made");
  }
  throw HistoryError(text::visible(directory.u8string()) +
                     " is no folder that runs can be kept in" +
                     (failure ? ": " + failure.message() : std::string()));
}

bool mayOnlyBeRead(const std::filesystem::path& directory) {
  return ::faccessat(AT_FDCWD, directory.c_str(), W_OK, AT_EACCESS) != 0;
}

void makePrivateFile(const std::filesystem::path& file) {
  const int handle = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (handle >= 0) {
    ::close(handle);
    keepEntries(file.parent_path());
    return;
  }
  const int code = errno;
  refuseLinkOfOthers(file);
  errno = code;
  // Of a place that may only be read, what is there is read.
  if (errno != EEXIST && ::access(file.c_str(), F_OK) != 0) fail(file, "cannot be made");
}

}  // namespace history

#endif
