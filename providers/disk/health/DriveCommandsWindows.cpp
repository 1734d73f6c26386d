#include <windows.h>
// The other one comes first.
#include <winioctl.h>

#include <cstring>

#include "providers/common/WindowsText.h"
#include "providers/disk/health/DriveCommands.h"

namespace providers::disk {

namespace {

constexpr std::uint8_t kGetLogPage = 0x02;

// As the system has them; not every edition of its headers does.
constexpr int kDeviceProtocolSpecific = 50;
constexpr DWORD kProtocolNvme = 3, kNvmeLogPage = 2;

struct ProtocolQuery {
  DWORD property;
  DWORD query;
  DWORD protocol;
  DWORD dataType;
  DWORD value;
  DWORD subValue;
  DWORD dataOffset;
  DWORD dataLength;
  DWORD reserved[4];
};

/// The system itself asks drives whether they are going to fail, and hands log pages of NVMe on.
class SystemCommands : public DriveCommands {
 public:
  explicit SystemCommands(HANDLE file) : m_file(file) {}
  SystemCommands(const SystemCommands&) = delete;
  SystemCommands& operator=(const SystemCommands&) = delete;
  ~SystemCommands() override { CloseHandle(m_file); }

  NvmeAnswer nvme(const NvmeCommand& command) override {
    NvmeAnswer answer;
    if (command.opcode != kGetLogPage) {
      answer.problem = "Windows hands no such command on to the drive";
      return answer;
    }
    Bytes buffer(sizeof(ProtocolQuery) + command.bytes);
    ProtocolQuery query{};
    query.property = kDeviceProtocolSpecific;
    query.protocol = kProtocolNvme;
    query.dataType = kNvmeLogPage;
    query.value = command.word10 & 0xFF;
    query.dataOffset = sizeof query - offsetof(ProtocolQuery, protocol);
    query.dataLength = command.bytes;
    std::memcpy(buffer.data(), &query, sizeof query);
    DWORD got = 0;
    const auto size = static_cast<DWORD>(buffer.size());
    if (!DeviceIoControl(m_file, IOCTL_STORAGE_QUERY_PROPERTY, buffer.data(), size, buffer.data(),
                         size, &got, nullptr)) {
      answer.problem =
          "The drive's log cannot be had (error " + std::to_string(GetLastError()) + ")";
      return answer;
    }
    if (got == size) answer.data.assign(buffer.end() - command.bytes, buffer.end());
    return answer;
  }

  ScsiAnswer scsi(const ScsiCommand&) override {
    ScsiAnswer answer;
    answer.problem = "Windows hands no such command on to the drive";
    return answer;
  }

  std::optional<bool> systemPredictsFailure() override {
    STORAGE_PREDICT_FAILURE prediction{};
    DWORD got = 0;
    if (!DeviceIoControl(m_file, IOCTL_STORAGE_PREDICT_FAILURE, nullptr, 0, &prediction,
                         sizeof prediction, &got, nullptr))
      return std::nullopt;
    return prediction.PredictFailure != 0;
  }

 private:
  const HANDLE m_file;
};

}  // namespace

bool systemHandsCommandsOn() { return false; }

OpenedDrive openDrive(const Disk& disk) {
  const HANDLE file =
      CreateFileW(toWide(disk.node).c_str(), GENERIC_READ | GENERIC_WRITE,
                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE)
    return {nullptr, disk.node + " cannot be opened (error " + std::to_string(GetLastError()) +
                         "); drives are asked by administrators alone"};
  return {std::make_unique<SystemCommands>(file), {}};
}

}  // namespace providers::disk
