#include "platform/NativePath.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace diagsrunner::platform {

#if defined(_WIN32)

namespace {

std::wstring widened(const std::string& text) {
  const int length = static_cast<int>(text.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
  return wide;
}

}  // namespace

std::FILE* openText(const std::string& path) { return _wfopen(widened(path).c_str(), L"r"); }

#else

namespace {

std::string withSlashes(std::string path) {
  static const std::string kDataFolder = "\\kfr\\data\\";
  const std::size_t position = path.rfind(kDataFolder);
  if (position != std::string::npos) {
    path.replace(position, kDataFolder.size(), "/kfr/data/");
  }
  return path;
}

}  // namespace

std::FILE* openText(const std::string& path) { return std::fopen(withSlashes(path).c_str(), "r"); }

#endif

}  // namespace diagsrunner::platform
