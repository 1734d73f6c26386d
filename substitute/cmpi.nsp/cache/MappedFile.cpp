#include "substitute/cmpi.nsp/cache/MappedFile.h"

#include <filesystem>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace cmpinsp {

#if defined(_WIN32)

MappedFile::MappedFile(const std::string& path) {
  const DWORD others = FILE_SHARE_READ | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileW(std::filesystem::u8path(path).c_str(), GENERIC_READ, others,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  LARGE_INTEGER size{};
  const bool hasSize = GetFileSizeEx(file, &size) != 0 && size.QuadPart > 0;
  const HANDLE mapping =
      hasSize ? CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr) : nullptr;
  if (mapping != nullptr) {
    m_start = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
    if (m_start != nullptr) m_size = static_cast<std::size_t>(size.QuadPart);
    CloseHandle(mapping);
  }
  CloseHandle(file);
}

MappedFile::~MappedFile() {
  if (m_start != nullptr) UnmapViewOfFile(m_start);
}

#else

namespace {

bool isOthers(const struct stat& status) {
  const bool isTheirs = status.st_uid != 0 && status.st_uid != geteuid();
  return isTheirs || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

}  // namespace

MappedFile::MappedFile(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (file < 0) return;
  struct stat status {};
  const bool isFile = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
  m_isForeign = isFile && isOthers(status);
  if (isFile && !m_isForeign && status.st_size > 0) {
    const auto size = static_cast<std::size_t>(status.st_size);
    void* const start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (start != MAP_FAILED) {
      m_start = start;
      m_size = size;
    }
  }
  close(file);
}

MappedFile::~MappedFile() {
  if (m_start != nullptr) munmap(m_start, m_size);
}

#endif

}  // namespace cmpinsp
