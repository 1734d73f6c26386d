#include <windows.h>

#include <algorithm>
#include <string>

#include "engine/identity/Smbios.h"
#include "engine/identity/ThisMachine.h"
#include "engine/identity/WindowsParts.h"
#include "engine/identity/Words.h"

namespace engine {

std::string utf8Of(const std::wstring& wide) {
  const auto length = static_cast<int>(wide.size());
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, text.data(), size, nullptr, nullptr);
  return text;
}

namespace {

std::string hostName() {
  DWORD size = 0;
  GetComputerNameExW(ComputerNameDnsHostname, nullptr, &size);
  std::wstring name(size, L'\0');
  if (GetComputerNameExW(ComputerNameDnsHostname, name.data(), &size) == 0) return {};
  name.resize(size);
  return telling(utf8Of(name));
}

/// Without the eight bytes that Windows puts in front: four of versions, four of length.
std::string firmwareTable() {
  constexpr DWORD kRawSmbios = 0x52534D42;  // "RSMB"
  constexpr std::size_t kHeader = 8;
  constexpr UINT kLargest = 1024 * 1024;
  const UINT wanted = std::min(GetSystemFirmwareTable(kRawSmbios, 0, nullptr, 0), kLargest);
  std::string table(wanted, '\0');
  const UINT size = GetSystemFirmwareTable(kRawSmbios, 0, table.data(), wanted);
  if (size > wanted || size <= kHeader) return {};
  return table.substr(kHeader, size - kHeader);
}

std::string processorText(const wchar_t* name) {
  constexpr DWORD kLongest = 512;
  std::wstring text(kLongest, L'\0');
  auto size = static_cast<DWORD>(kLongest * sizeof(wchar_t));
  const LSTATUS status =
      RegGetValueW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", name,
                   RRF_RT_REG_SZ, nullptr, text.data(), &size);
  if (status != ERROR_SUCCESS) return {};
  text.resize(text.find(L'\0'));
  return telling(utf8Of(text));
}

Part firstProcessor() {
  Part part;
  part.kind = "processor";
  part.location = "CPU 0";
  part.name = joined({part.location, processorText(L"ProcessorNameString")}, ": ");
  part.manufacturer = processorText(L"VendorIdentifier");
  part.version = counted(GetActiveProcessorCount(ALL_PROCESSOR_GROUPS), "thread");
  return part;
}

}  // namespace

Identity thisMachine() {
  Identity identity = identityOfSmbios(firmwareTable());
  identity.host = hostName();
  const bool hasProcessor = std::any_of(identity.parts.begin(), identity.parts.end(),
                                        [](const Part& part) { return part.kind == "processor"; });
  if (!hasProcessor) identity.parts.push_back(firstProcessor());
  for (const auto& more : {windowsDisks(), windowsPorts()}) {
    identity.parts.insert(identity.parts.end(), more.begin(), more.end());
  }
  return identity;
}

}  // namespace engine
