#include "providers/disk/scratch/ScratchFolderPosix.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <utility>

namespace providers::disk {

namespace {

std::string failure(const char* what, int error) {
  return std::string(what) + ": " + std::strerror(error);
}

/// With which the system passes on that a drive, or the way to it, failed.
bool isOfDrive(int error) {
  switch (error) {
    case EIO:
    case ENXIO:
    case ENODEV:
    case ENODATA:
    case ENOLINK:
    case EREMOTEIO:
    case ETIMEDOUT:
    case EILSEQ:
      return true;
    default:
      return false;
  }
}

ScratchProblem problemOf(const char* what, int error) {
  return {failure(what, error), isOfDrive(error)};
}

class UnnamedFile : public ScratchFile {
 public:
  UnnamedFile(int file, std::string folder, std::uint64_t bytes)
      : m_file(file), m_folder(std::move(folder)), m_bytes(bytes) {}
  UnnamedFile(const UnnamedFile&) = delete;
  UnnamedFile& operator=(const UnnamedFile&) = delete;
  ~UnnamedFile() override { close(m_file); }

  std::uint64_t bytes() const override { return m_bytes; }
  std::string folder() const override { return m_folder; }
  ScratchProblem write(std::uint64_t offset, const std::uint8_t* data, std::size_t bytes) override {
    ssize_t done = 0;
    do {
      done = pwrite(m_file, data, bytes, static_cast<off_t>(offset));
    } while (done < 0 && errno == EINTR);
    if (done < 0) return problemOf("the write failed", errno);
    if (static_cast<std::size_t>(done) < bytes) return {"less was written than there was", false};
    return {};
  }
  ScratchProblem read(std::uint64_t offset, std::uint8_t* into, std::size_t bytes) override {
    ssize_t done = 0;
    do {
      done = pread(m_file, into, bytes, static_cast<off_t>(offset));
    } while (done < 0 && errno == EINTR);
    if (done < 0) return problemOf("the read failed", errno);
    // The file has them: it was written before.
    if (static_cast<std::size_t>(done) < bytes) return {"less came back than was asked for", true};
    return {};
  }
  ScratchProblem flush() override {
    if (fdatasync(m_file) == 0) return {};
    return problemOf("the disk did not take what was written", errno);
  }

 private:
  const int m_file;
  const std::string m_folder;
  const std::uint64_t m_bytes;
};

/// What may be taken: a twentieth of the file system, and a gibibyte of it at least, is left to
/// others, but never more than half of what is free.
std::uint64_t roomIn(int file) {
  constexpr std::uint64_t kGibi = std::uint64_t{1} << 30;
  constexpr std::uint64_t kKeptShare = 20;
  struct statvfs status {};
  if (fstatvfs(file, &status) != 0) return 0;
  const std::uint64_t free = std::uint64_t{status.f_bavail} * status.f_frsize;
  const std::uint64_t kept =
      std::max(std::uint64_t{status.f_blocks} * status.f_frsize / kKeptShare, kGibi);
  return free > kept ? std::min(free - kept, free / 2) : 0;
}

/// Takes the room before anything is written, where the file system can do that.
int allocate(int file, std::uint64_t bytes) {
  int error = 0;
  do {
    error = fallocate(file, 0, 0, static_cast<off_t>(bytes)) == 0 ? 0 : errno;
  } while (error == EINTR);
  return error == EOPNOTSUPP || error == ENOSYS ? 0 : error;
}

/// How large a file of this process may be. One that grows beyond that ends the process, as a rule.
std::uint64_t largestFile() {
  rlimit limit{};
  const bool limited = getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
  return limited ? std::uint64_t{limit.rlim_cur} : UINT64_MAX;
}

/// How large a file can be made, and what keeps it from what was asked for.
struct Size {
  std::uint64_t bytes = 0;
  std::string shortage;
};

Size sizeFor(int file, std::uint64_t asked) {
  constexpr std::uint64_t kUnit = std::uint64_t{1} << 20;
  const std::uint64_t room = roomIn(file), largest = largestFile();
  const std::uint64_t bytes = std::min({asked, room, largest}) / kUnit * kUnit;
  if (bytes == asked) return {bytes, {}};
  return {bytes, room <= largest ? "room" : "the right to large files (ulimit -f; RLIMIT_FSIZE)"};
}

}  // namespace

ScratchFolder::ScratchFolder(std::string path)
    : m_path(std::move(path)), m_folder(open(m_path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

ScratchFolder::ScratchFolder(ScratchFolder&& other) noexcept
    : m_path(std::move(other.m_path)), m_folder(std::exchange(other.m_folder, -1)) {}

ScratchFolder::~ScratchFolder() {
  if (isOpen()) close(m_folder);
}

std::string ScratchFolder::mount() const {
  if (!isOpen()) return {};
  std::ifstream facts("/proc/self/fdinfo/" + std::to_string(m_folder));
  for (std::string name, value; facts >> name >> value;)
    if (name == "mnt_id:") return value;
  return {};
}

/// Without a name, or with one that is taken away at once.
int ScratchFolder::makeUnnamed() const {
  constexpr mode_t kOwnerOnly = 0600;
  constexpr int kNames = 8;
  const int file =
      openat(m_folder, ".", O_TMPFILE | O_EXCL | O_RDWR | O_DIRECT | O_CLOEXEC, kOwnerOnly);
  if (file >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT)) return file;
  int named = -1;
  // A process that was killed at the wrong moment has left its own.
  for (int i = 0; i < kNames && named < 0; ++i) {
    const std::string name = ".diags-scratch-" + std::to_string(getpid()) + "-" + std::to_string(i);
    named = openat(m_folder, name.c_str(),
                   O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR | O_DIRECT | O_CLOEXEC, kOwnerOnly);
    if (named < 0 && errno != EEXIST) return -1;
    if (named >= 0) unlinkat(m_folder, name.c_str(), 0);
  }
  return named;
}

OpenedScratch ScratchFolder::makeFile(std::uint64_t bytes) const {
  const int file = makeUnnamed();
  if (file < 0)
    return {nullptr,
            errno == EINVAL ? m_path + ": the file system does not allow reads past the cache"
                            : failure(("no file can be made in " + m_path).c_str(), errno),
            {}};
  Size size = sizeFor(file, bytes);
  auto scratch = std::make_unique<UnnamedFile>(file, m_path, size.bytes);
  if (size.bytes == 0)
    return {nullptr, "no file can be made in " + m_path + " for lack of " + size.shortage, {}};
  const int error = allocate(file, size.bytes);
  if (error != 0) return {nullptr, failure(("no room can be had in " + m_path).c_str(), error), {}};
  return {std::move(scratch), {}, std::move(size.shortage)};
}

}  // namespace providers::disk
