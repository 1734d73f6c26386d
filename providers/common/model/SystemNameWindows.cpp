#include <windows.h>

#include "providers/common/WindowsText.h"
#include "providers/common/model/SystemName.h"

namespace providers {

std::string systemName() {
  wchar_t name[257] = {};
  DWORD length = sizeof name / sizeof name[0];
  if (!GetComputerNameExW(ComputerNameDnsHostname, name, &length) || length == 0)
    return "localhost";
  return toUtf8(name);
}

}  // namespace providers
