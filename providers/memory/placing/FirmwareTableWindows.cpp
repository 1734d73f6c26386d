#include <windows.h>

#include <algorithm>
#include <string>

#include "providers/memory/placing/MemoryModules.h"

namespace providers::memory {

namespace {

constexpr DWORD kRawSmbios = 0x52534D42;  // "RSMB"

}  // namespace

/// Without the eight bytes that Windows puts in front: four of versions, four of length.
std::string firmwareTable() {
  constexpr std::size_t kHeader = 8;
  constexpr UINT kLargest = 1024 * 1024;
  const UINT wanted = std::min(GetSystemFirmwareTable(kRawSmbios, 0, nullptr, 0), kLargest);
  std::string table(wanted, '\0');
  const UINT size = GetSystemFirmwareTable(kRawSmbios, 0, table.data(), wanted);
  if (size > wanted || size <= kHeader) return {};
  return table.substr(kHeader, size - kHeader);
}

bool hasFirmwareTable() { return GetSystemFirmwareTable(kRawSmbios, 0, nullptr, 0) > 0; }

}  // namespace providers::memory
