#include <array>

#include "substitute/cmpi.nsp/installation/AccessList.h"

namespace cmpinsp {
namespace {

struct Group {
  WELL_KNOWN_SID_TYPE type;
  const char* name;
};

/// Who is in one of these may be anybody who can log on, or nobody in particular.
constexpr std::array<Group, 7> kOthers{{{WinWorldSid, "Everyone"},
                                        {WinAuthenticatedUserSid, "Authenticated Users"},
                                        {WinBuiltinUsersSid, "Users"},
                                        {WinBuiltinGuestsSid, "Guests"},
                                        {WinInteractiveSid, "Interactive"},
                                        {WinNetworkSid, "Network"},
                                        {WinLocalSid, "Local"}}};

/// The group's name if it is one of the others; otherwise null.
const char* nameOfOthers(PSID account) {
  for (const Group& group : kOthers) {
    if (IsWellKnownSid(account, group.type) != 0) return group.name;
  }
  return nullptr;
}

/// The entry's mask in terms of the rights of files.
ACCESS_MASK fileRights(ACCESS_MASK mask) {
  GENERIC_MAPPING mapping{FILE_GENERIC_READ, FILE_GENERIC_WRITE, FILE_GENERIC_EXECUTE,
                          FILE_ALL_ACCESS};
  MapGenericMask(&mask, &mapping);
  return mask;
}

}  // namespace

const char* othersGranted(PACL list, ACCESS_MASK rights) {
  // Without a list, everybody may do everything.
  if (list == nullptr) return kOthers[0].name;
  for (DWORD i = 0; i < list->AceCount; ++i) {
    void* entry = nullptr;
    if (GetAce(list, i, &entry) == 0) continue;
    auto* const header = static_cast<ACE_HEADER*>(entry);
    const bool isHere = (header->AceFlags & INHERIT_ONLY_ACE) == 0;
    if (header->AceType != ACCESS_ALLOWED_ACE_TYPE || !isHere) continue;
    auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    const char* const name = nameOfOthers(&allowed->SidStart);
    if (name != nullptr && (fileRights(allowed->Mask) & rights) != 0) return name;
  }
  return nullptr;
}

}  // namespace cmpinsp
