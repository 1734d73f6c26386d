#include <windows.h>

#include "substitute/cmpi.nsp/installation/InstallationRights.h"

namespace cmpinsp {

bool runsAsRoot() {
  HANDLE token = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return false;
  TOKEN_ELEVATION elevation{};
  DWORD length = 0;
  const BOOL isKnown =
      GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &length);
  CloseHandle(token);
  return isKnown != 0 && elevation.TokenIsElevated != 0;
}

std::string ownerBesidesRoot(const std::string&) { return std::string(); }

}  // namespace cmpinsp
