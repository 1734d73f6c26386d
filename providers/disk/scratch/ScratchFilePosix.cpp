#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <optional>
#include <sstream>
#include <vector>

#include "providers/disk/finding/DeviceNumberPosix.h"
#include "providers/disk/scratch/ScratchBlock.h"
#include "providers/disk/scratch/ScratchFile.h"
#include "providers/disk/scratch/ScratchPlaces.h"

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
      return true;
    default:
      return false;
  }
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
    const ssize_t done = pwrite(m_file, data, bytes, static_cast<off_t>(offset));
    const bool ofDrive = done < 0 && isOfDrive(errno);
    return {result("the write failed", "less was written than there was", done, bytes), ofDrive};
  }
  std::string read(std::uint64_t offset, std::uint8_t* into, std::size_t bytes) override {
    const ssize_t done = pread(m_file, into, bytes, static_cast<off_t>(offset));
    return result("the read failed", "less came back than was asked for", done, bytes);
  }
  ScratchProblem flush() override {
    if (fdatasync(m_file) == 0) return {};
    const int error = errno;
    return {failure("the disk did not take what was written", error), isOfDrive(error)};
  }

 private:
  static std::string result(const char* failed, const char* tooLittle, ssize_t done,
                            std::size_t bytes) {
    if (done < 0) return failure(failed, errno);
    return static_cast<std::size_t>(done) == bytes ? "" : tooLittle;
  }

  const int m_file;
  const std::string m_folder;
  const std::uint64_t m_bytes;
};

/// A new file without a name, or with one that is taken away at once.
int makeUnnamed(const std::string& folder) {
  constexpr mode_t kOwnerOnly = 0600;
  const int file =
      open(folder.c_str(), O_TMPFILE | O_EXCL | O_RDWR | O_DIRECT | O_CLOEXEC, kOwnerOnly);
  if (file >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT)) return file;
  // Within the folder that was opened, whatever becomes of its path meanwhile.
  const int place = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (place < 0) return -1;
  const std::string name = ".diags-scratch-" + std::to_string(getpid());
  const int named =
      openat(place, name.c_str(), O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR | O_DIRECT | O_CLOEXEC,
             kOwnerOnly);
  const int error = errno;
  if (named >= 0) unlinkat(place, name.c_str(), 0);
  close(place);
  errno = error;
  return named;
}

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

std::string deviceOf(int file) {
  struct stat status {};
  if (fstat(file, &status) != 0) return {};
  return deviceNumber(status.st_dev);
}

OpenedScratch openIn(const std::string& folder, std::uint64_t bytes) {
  constexpr std::uint64_t kLeast = std::uint64_t{1} << 20;
  const int file = makeUnnamed(folder);
  if (file < 0)
    return {nullptr, errno == EINVAL
                         ? folder + ": the file system does not allow reads past the cache"
                         : failure(("no file can be made in " + folder).c_str(), errno)};
  auto scratch =
      std::make_unique<UnnamedFile>(file, folder, std::min(bytes, roomIn(file)) / kLeast * kLeast);
  if (scratch->bytes() < kLeast) return {nullptr, "there is not enough room in " + folder};
  const int error = allocate(file, scratch->bytes());
  if (error != 0) return {nullptr, failure(("no room can be had in " + folder).c_str(), error)};
  return {std::move(scratch), {}};
}

std::vector<Mount> currentMounts() {
  std::ostringstream text;
  text << std::ifstream("/proc/self/mountinfo").rdbuf();
  return parseMounts(text.str());
}

/// The number of the file system that the folder is on.
std::optional<std::string> fileSystemOf(const std::string& folder) {
  const int place = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (place < 0) return std::nullopt;
  const std::string device = deviceOf(place);
  close(place);
  return device;
}

bool liesOn(const std::string& folder, const std::vector<std::string>& roots) {
  const auto device = fileSystemOf(folder);
  return device && std::any_of(roots.begin(), roots.end(), [&device](const std::string& root) {
           return fileSystemOf(root) == device;
         });
}

}  // namespace

bool systemHasScratchFiles() { return true; }

OpenedScratch openScratch(const Disk& disk, const std::string& folder, std::uint64_t bytes) {
  const std::vector<std::string> roots = mountsOn(disk, currentMounts());
  if (!folder.empty())
    return liesOn(folder, roots)
               ? openIn(folder, bytes)
               : OpenedScratch{nullptr, folder + " does not lie on " + disk.name +
                                            ", or its file system cannot be written"};
  OpenedScratch opened{nullptr, "no file system of " + disk.name + " is mounted for writing"};
  std::vector<std::string> candidates{"/var/tmp", "/tmp"};
  candidates.erase(
      std::remove_if(candidates.begin(), candidates.end(),
                     [&roots](const std::string& place) { return !liesOn(place, roots); }),
      candidates.end());
  candidates.insert(candidates.end(), roots.begin(), roots.end());
  for (const std::string& place : candidates) {
    opened = openIn(place, bytes);
    if (opened.file) break;
  }
  return opened;
}

}  // namespace providers::disk
