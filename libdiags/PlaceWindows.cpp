#include <windows.h>

#include <filesystem>

#include "libdiags/Place.h"

namespace libdiags {

std::string folderOfThisLibrary() {
  HMODULE library = nullptr;
  constexpr DWORD kOfThisFunction =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!GetModuleHandleExW(kOfThisFunction, reinterpret_cast<LPCWSTR>(&folderOfThisLibrary),
                          &library))
    return {};
  std::wstring path(32768, L'\0');  // the longest path that there is
  const DWORD length = GetModuleFileNameW(library, path.data(), static_cast<DWORD>(path.size()));
  path.resize(length);
  return std::filesystem::path(path).parent_path().u8string();
}

}  // namespace libdiags
