#include <windows.h>
#include <winioctl.h>

#include <cstdint>
#include <map>
#include <string>

#include "engine/identity/StorageDescriptor.h"
#include "engine/identity/WindowsParts.h"

namespace engine {
namespace {

constexpr std::size_t kMostDisks = 256;

/// A disk, opened for questions about it alone: that needs no rights and reads nothing.
class AskedDisk {
 public:
  explicit AskedDisk(const std::wstring& name)
      : m_handle(CreateFileW((L"\\\\.\\" + name).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE,
                             nullptr, OPEN_EXISTING, 0, nullptr)) {}
  ~AskedDisk() {
    if (m_handle != INVALID_HANDLE_VALUE) CloseHandle(m_handle);
  }
  AskedDisk(const AskedDisk&) = delete;
  AskedDisk& operator=(const AskedDisk&) = delete;

  /// Empty when there is no answer.
  std::string ask(DWORD code, const void* question, DWORD size) const {
    constexpr std::size_t kLongest = 4096;
    std::string answer(kLongest, '\0');
    DWORD length = 0;
    // The interface takes the question as writable, and does not write to it.
    const BOOL done =
        DeviceIoControl(m_handle, code, const_cast<void*>(question), size, answer.data(),
                        static_cast<DWORD>(answer.size()), &length, nullptr);
    answer.resize(done != 0 && length <= kLongest ? length : 0);
    return answer;
  }

 private:
  const HANDLE m_handle;
};

std::uint64_t bytesOf(const AskedDisk& disk) {
  const std::string answer = disk.ask(IOCTL_DISK_GET_DRIVE_GEOMETRY_EX, nullptr, 0);
  constexpr std::size_t kSize = offsetof(DISK_GEOMETRY_EX, DiskSize);
  if (answer.size() < kSize + sizeof(std::uint64_t)) return 0;
  std::uint64_t bytes = 0;
  for (std::size_t byte = sizeof bytes; byte-- > 0;) {
    bytes = bytes << 8U | static_cast<unsigned char>(answer[kSize + byte]);
  }
  return bytes;
}

/// All names of devices, each ended by a zero.
std::wstring deviceNames() {
  constexpr std::size_t kMost = 16U * 1024 * 1024;
  for (std::wstring names(std::size_t{64} * 1024, L'\0'); names.size() <= kMost;
       names.resize(names.size() * 2)) {
    const DWORD length = QueryDosDeviceW(nullptr, names.data(), static_cast<DWORD>(names.size()));
    if (length != 0) return names.substr(0, length);
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) break;
  }
  return {};
}

std::map<unsigned, std::wstring> drives() {
  const std::wstring names = deviceNames();
  std::map<unsigned, std::wstring> found;
  for (std::size_t at = 0; at < names.size() && found.size() < kMostDisks;) {
    const std::wstring name(names.c_str() + at);
    if (const auto number = driveNumber(utf8Of(name))) found.emplace(*number, name);
    at += name.size() + 1;
  }
  return found;
}

}  // namespace

std::vector<Part> windowsDisks() {
  std::vector<Part> parts;
  for (const auto& [number, name] : drives()) {
    const AskedDisk disk(name);
    STORAGE_PROPERTY_QUERY question = {};
    question.PropertyId = StorageDeviceProperty;
    question.QueryType = PropertyStandardQuery;
    const std::string descriptor =
        disk.ask(IOCTL_STORAGE_QUERY_PROPERTY, &question, sizeof question);
    if (auto part = diskOfDescriptor(number, descriptor, bytesOf(disk))) {
      parts.push_back(std::move(*part));
    }
  }
  return parts;
}

}  // namespace engine
