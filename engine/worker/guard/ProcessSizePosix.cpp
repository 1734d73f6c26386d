#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "engine/worker/guard/ProcessSize.h"

namespace engine::guard {

std::size_t processSize() noexcept {
  const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
  if (file < 0) return 0;
  char text[64] = {};
  const ssize_t size = read(file, text, sizeof text - 1);
  close(file);
  if (size <= 0) return 0;
  return std::strtoull(text, nullptr, 10) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace engine::guard
