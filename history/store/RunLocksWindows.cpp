#if defined(_WIN32)

#include <windows.h>

#include "history/store/RunLocks.h"

namespace history {
namespace {

OVERLAPPED placeOf(std::int64_t run) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(static_cast<std::uint64_t>(run) & 0xffffffffU);
  place.OffsetHigh = static_cast<DWORD>(static_cast<std::uint64_t>(run) >> 32U);
  return place;
}

HANDLE handleOf(std::intptr_t file) { return reinterpret_cast<HANDLE>(file); }

}  // namespace

RunLocks::RunLocks(const std::filesystem::path& file) {
  const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  HANDLE handle = ::CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, sharing, nullptr,
                                OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    handle = ::CreateFileW(file.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
  }
  m_file = reinterpret_cast<std::intptr_t>(handle);  // the invalid one is -1
}

RunLocks::~RunLocks() {
  if (m_file != -1) ::CloseHandle(handleOf(m_file));
}

bool RunLocks::lock(std::int64_t run) noexcept {
  OVERLAPPED place = placeOf(run);
  constexpr DWORD kFlags = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  // Those that ask whether it is taken hold it for a moment.
  for (int attempt = 0; m_file != -1 && attempt < 50; ++attempt) {
    if (::LockFileEx(handleOf(m_file), kFlags, 0, 1, 0, &place) != 0) return true;
    ::Sleep(1);
  }
  return false;
}

void RunLocks::unlock(std::int64_t run) noexcept {
  OVERLAPPED place = placeOf(run);
  ::UnlockFileEx(handleOf(m_file), 0, 1, 0, &place);
}

bool RunLocks::isTakenByOthers(std::int64_t run) const noexcept {
  if (m_file == -1) return false;
  OVERLAPPED place = placeOf(run);
  // A lock that is shared: two that ask at once are not in each other's way.
  if (::LockFileEx(handleOf(m_file), LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0) {
    ::UnlockFileEx(handleOf(m_file), 0, 1, 0, &place);
    return false;
  }
  return ::GetLastError() == ERROR_LOCK_VIOLATION;
}

}  // namespace history

#endif
