#include "runner/DataFile.h"

#include <cstddef>

#include "framework/TOSSpecific.h"
#include "framework/TVORException.h"
#include "platform/Platform.h"

namespace diagsrunner {

using NZELVOR20::TOSSpecific;
using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

std::string dataFilePath(const std::string& name) {
  return TOSSpecific::GetVORRootPath() + "\\kfr\\data\\" + name;
}

std::uint32_t dataFileSize(const std::string& path) {
  return static_cast<std::uint32_t>(TOSSpecific::GetFileSize(path));
}

platform::Buffer allocateTextBuffer(std::uint32_t size) {
  platform::Buffer buffer = platform::allocateZeroed(static_cast<std::size_t>(size) + 1);
  if (!buffer) {
    throw TVORException(TVORStatusCode(NZELVOR20::eVOROutOfMemory));
  }
  return buffer;
}

namespace {

/// False where there is no such file.
bool findDataFile(const std::string& path, std::uint32_t& size) {
  try {
    size = dataFileSize(path);
    return true;
  } catch (const TVORException&) {
    return false;
  }
}

}  // namespace

platform::Buffer readDataFile(const std::string& path) {
  std::uint32_t size = 0;
  if (!findDataFile(path, size)) {
    return nullptr;
  }
  platform::Buffer buffer = allocateTextBuffer(size);
  if (!platform::readFile(path, buffer.get(), size)) {
    return nullptr;
  }
  return buffer;
}

}  // namespace diagsrunner
