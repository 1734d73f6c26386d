#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <filesystem>
#include <limits>

#include "substitute/vorcore/system/LogFile.h"

namespace vorcore {
namespace {

[[noreturn]] void fail(DWORD error) {
  throw std::system_error(static_cast<int>(error), std::system_category());
}

bool isPlainFile(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION facts{};
  constexpr DWORD kOthers = FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY;
  return ::GetFileType(file) == FILE_TYPE_DISK && ::GetFileInformationByHandle(file, &facts) != 0 &&
         (facts.dwFileAttributes & kOthers) == 0;
}

}  // namespace

LogFile::LogFile(const std::string& path)
    : m_file(::CreateFileW(std::filesystem::u8path(path).c_str(), FILE_APPEND_DATA,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT,
                           nullptr)) {
  if (m_file == INVALID_HANDLE_VALUE) fail(::GetLastError());
  if (isPlainFile(m_file)) return;
  ::CloseHandle(m_file);
  fail(ERROR_BAD_PATHNAME);
}

LogFile::~LogFile() { ::CloseHandle(m_file); }

std::error_code LogFile::append(const char* text, std::size_t length) noexcept {
  while (length > 0) {
    constexpr std::size_t kMost = std::numeric_limits<DWORD>::max() / 2;
    DWORD written = 0;
    const auto part = static_cast<DWORD>(length < kMost ? length : kMost);
    if (::WriteFile(m_file, text, part, &written, nullptr) == 0) {
      return std::error_code(static_cast<int>(::GetLastError()), std::system_category());
    }
    text += written;
    length -= written;
  }
  return {};
}

}  // namespace vorcore
