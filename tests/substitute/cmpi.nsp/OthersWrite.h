#pragma once

#include <filesystem>

#if defined(_WIN32)
#include <windows.h>
// These need windows.h before them.
#include <aclapi.h>
#include <sddl.h>

#include <string>
#endif

namespace cmpinsp {

#if defined(_WIN32)

inline void setAccess(const std::filesystem::path& path, const char* list) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ConvertStringSecurityDescriptorToSecurityDescriptorA(list, SDDL_REVISION_1, &descriptor, nullptr);
  BOOL isPresent = FALSE;
  BOOL isDefault = FALSE;
  PACL entries = nullptr;
  GetSecurityDescriptorDacl(descriptor, &isPresent, &entries, &isDefault);
  std::wstring name = path.native();
  SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                        entries, nullptr);
  LocalFree(descriptor);
}

/// Lets everybody write the file, or in the folder.
inline void letOthersWrite(const std::filesystem::path& path) { setAccess(path, "D:(A;;FA;;;WD)"); }

#else

/// Lets everybody write the file, or in the folder.
inline void letOthersWrite(const std::filesystem::path& path) {
  std::filesystem::permissions(path, std::filesystem::perms::all);
}

#endif

}  // namespace cmpinsp
