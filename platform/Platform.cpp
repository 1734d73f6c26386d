#include "platform/Platform.h"

#include <cstdio>
#include <cstdlib>

#include "platform/NativePath.h"

namespace diagsrunner::platform {

Buffer allocateZeroed(std::size_t size) { return Buffer(static_cast<char*>(std::calloc(size, 1))); }

void release(char* buffer) noexcept { std::free(buffer); }

bool readFile(const std::string& path, char* buffer, std::size_t size) {
  std::FILE* file = openText(path);
  if (file == nullptr) {
    return false;
  }
  // A file that has become shorter leaves the rest of the buffer as it was.
  [[maybe_unused]] const std::size_t got = std::fread(buffer, 1, size, file);
  std::fclose(file);
  return true;
}

}  // namespace diagsrunner::platform
