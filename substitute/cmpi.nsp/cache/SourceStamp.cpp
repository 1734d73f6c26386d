#include "substitute/cmpi.nsp/cache/SourceStamp.h"

#if defined(_WIN32)
#include <windows.h>

#include <filesystem>

#include "substitute/vorcore/values/ClassDeclaration.h"
#else
#include <sys/stat.h>
#endif

namespace cmpinsp {

#if defined(_WIN32)

namespace {

std::uint64_t joined(DWORD high, DWORD low) { return std::uint64_t{high} << 32U | low; }

}  // namespace

SourceStamp stampOf(const std::string& path) {
  SourceStamp stamp;
  stamp.path = path;
  WIN32_FILE_ATTRIBUTE_DATA data{};
  const std::filesystem::path file = std::filesystem::u8path(path);
  if (GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data) == 0) return stamp;
  stamp.exists = true;
  stamp.size = joined(data.nFileSizeHigh, data.nFileSizeLow);
  stamp.modified = joined(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime);
  stamp.changed = joined(data.ftCreationTime.dwHighDateTime, data.ftCreationTime.dwLowDateTime);
  return stamp;
}

std::string identityOf(const std::string& path) { return vorcore::nameKey(path); }

#else

namespace {

std::uint64_t nanoseconds(const timespec& time) {
  return static_cast<std::uint64_t>(time.tv_sec) * 1000000000U +
         static_cast<std::uint64_t>(time.tv_nsec);
}

}  // namespace

SourceStamp stampOf(const std::string& path) {
  SourceStamp stamp;
  stamp.path = path;
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return stamp;
  stamp.exists = true;
  stamp.size = static_cast<std::uint64_t>(status.st_size);
  stamp.modified = nanoseconds(status.st_mtim);
  stamp.changed = nanoseconds(status.st_ctim);
  return stamp;
}

std::string identityOf(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return path;
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

#endif

}  // namespace cmpinsp
