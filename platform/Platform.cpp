#include "platform/Platform.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

#include "platform/NativePath.h"

namespace diagsrunner::platform {

void sleepMilliseconds(unsigned int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::int64_t currentTime() { return static_cast<std::int64_t>(std::time(nullptr)); }

double secondsBetween(std::int64_t later, std::int64_t earlier) {
  return std::difftime(static_cast<std::time_t>(later), static_cast<std::time_t>(earlier));
}

Buffer allocateZeroed(std::size_t size) { return Buffer(static_cast<char*>(std::calloc(size, 1))); }

bool readFile(const std::string& path, char* buffer, std::size_t size) {
  std::FILE* file = openText(path);
  if (file == nullptr) {
    return false;
  }
  // A file that has become shorter leaves the rest of the buffer as it was.
  static_cast<void>(std::fread(buffer, 1, size, file));
  std::fclose(file);
  return true;
}

}  // namespace diagsrunner::platform
