#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include "providers/common/DeviceNumberPosix.h"
#include "providers/disk/reading/BlockSource.h"
#include "providers/disk/reading/ThreadSource.h"
#include "providers/disk/reading/UringSource.h"

namespace providers::disk {

namespace {

std::string whyNot(const std::string& node, int error) {
  const std::string text = node + " cannot be opened for reading: " + std::strerror(error);
  if (error == EACCES)
    return text +
           "; run as root, or as a member of the group that the device belongs to (often disk)";
  if (error == EPERM)
    return text +
           "; this process may use no such device: inside a container it has to be handed in";
  if (error == EINVAL) return text + "; it does not allow reads past the cache";
  return text;
}

ReadAnswer readOnce(int file, const Extent& extent, std::uint8_t* into) {
  ssize_t got = 0;
  do {
    got = pread(file, into, extent.bytes, static_cast<off_t>(extent.offset));
  } while (got < 0 && errno == EINTR);
  if (got < 0) return {0, 0, readErrorOf(errno)};
  return {0, static_cast<std::uint32_t>(got), ReadError::None};
}

ReadAt readAtOf(int file) {
  const std::shared_ptr<const int> owner(new int(file), [](const int* number) {
    close(*number);
    delete number;
  });
  return
      [owner](const Extent& extent, std::uint8_t* into) { return readOnce(*owner, extent, into); };
}

}  // namespace

OpenedSource openSource(const std::string& node, const SourceShape& shape,
                        const std::string& number) {
  // What has become something else meanwhile, a fifo for one, must not hold the run.
  const int file = open(node.c_str(), O_RDONLY | O_DIRECT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return {nullptr, whyNot(node, errno)};
  struct stat status {};
  if (fstat(file, &status) != 0 || !(S_ISBLK(status.st_mode) || S_ISREG(status.st_mode))) {
    close(file);
    return {nullptr, node + " is no disk"};
  }
  if (std::string problem = whyAnotherDevice(file, node, number); !problem.empty()) {
    close(file);
    return {nullptr, std::move(problem)};
  }
  // io_uring gives reads back undone where this flag stays.
  fcntl(file, F_SETFL, O_DIRECT);
  if (auto source = makeUringSource(file, shape)) return {std::move(source), {}};
  if (auto source = makeThreadSource(readAtOf(file), shape)) return {std::move(source), {}};
  return {nullptr, node + " cannot be read: the system allows no further threads"};
}

}  // namespace providers::disk
