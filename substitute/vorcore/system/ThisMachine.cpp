#include "substitute/vorcore/system/ThisMachine.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace vorcore {

#if defined(_WIN32)

namespace {

constexpr DWORD kRawSmbios = 0x52534D42;  // "RSMB"
/// What Windows puts in front of the structures: four version bytes and their length.
constexpr std::size_t kRawSmbiosHeader = 8;

}  // namespace

FirmwareTexts thisMachinesFirmware() {
  std::vector<unsigned char> table(GetSystemFirmwareTable(kRawSmbios, 0, nullptr, 0));
  const UINT size =
      GetSystemFirmwareTable(kRawSmbios, 0, table.data(), static_cast<DWORD>(table.size()));
  if (size > table.size() || size <= kRawSmbiosHeader) return FirmwareTexts();
  return readSmbios(table.data() + kRawSmbiosHeader, size - kRawSmbiosHeader);
}

std::string programFolder() {
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) return std::string();
    if (length < path.size()) {
      path.resize(length);
      return std::filesystem::path(path).parent_path().u8string();
    }
    path.resize(2 * path.size());
  }
}

#else

namespace {

std::string contentOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

}  // namespace

FirmwareTexts thisMachinesFirmware() {
  const std::string table = contentOf("/sys/firmware/dmi/tables/DMI");
  if (!table.empty()) {
    return readSmbios(reinterpret_cast<const unsigned char*>(table.data()), table.size());
  }
  // The table is for the administrator alone; these texts of it are for everybody.
  return {contentOf("/sys/class/dmi/id/bios_version"), contentOf("/sys/class/dmi/id/board_name"),
          contentOf("/sys/class/dmi/id/product_name")};
}

std::string programFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().u8string();
}

#endif

}  // namespace vorcore
