#include <windows.h>
// The other one comes first.
#include <winioctl.h>

#include <algorithm>
#include <cstring>

#include "providers/common/SysfsFiles.h"
#include "providers/common/WindowsText.h"
#include "providers/disk/finding/MachineDisks.h"

namespace providers::disk {

namespace {

constexpr unsigned kMostDrives = 64;
constexpr std::uint8_t kNvme = 17;  // STORAGE_BUS_TYPE, which not every edition of the headers has

/// A drive that is asked about itself: no right is needed for that, and nothing is read of it.
class Drive {
 public:
  explicit Drive(const std::string& node)
      : m_handle(CreateFileW(toWide(node).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                             OPEN_EXISTING, 0, nullptr)) {}
  Drive(const Drive&) = delete;
  Drive& operator=(const Drive&) = delete;
  ~Drive() {
    if (m_handle != INVALID_HANDLE_VALUE) CloseHandle(m_handle);
  }
  bool exists() const { return m_handle != INVALID_HANDLE_VALUE; }

  /// What the drive answers; empty where it doesn't.
  std::vector<std::uint8_t> ask(DWORD what, const void* question, DWORD size) const {
    constexpr DWORD kMost = 16384;
    std::vector<std::uint8_t> answer(kMost);
    DWORD got = 0;
    if (!DeviceIoControl(m_handle, what, const_cast<void*>(question), size, answer.data(), kMost,
                         &got, nullptr))
      got = 0;
    answer.resize(got);
    return answer;
  }
  std::vector<std::uint8_t> property(STORAGE_PROPERTY_ID id) const {
    STORAGE_PROPERTY_QUERY query{};
    query.PropertyId = id;
    query.QueryType = PropertyStandardQuery;
    return ask(IOCTL_STORAGE_QUERY_PROPERTY, &query, sizeof query);
  }

 private:
  const HANDLE m_handle;
};

/// The structure at the beginning of an answer; zeros where there is less.
template <class Structure>
Structure head(const std::vector<std::uint8_t>& answer) {
  Structure structure{};
  std::memcpy(&structure, answer.data(), std::min(answer.size(), sizeof structure));
  return structure;
}

/// A text within an answer, by its place, which is 0 where there is none.
std::string textAt(const std::vector<std::uint8_t>& answer, DWORD place) {
  if (place == 0 || place >= answer.size()) return {};
  const auto begin = answer.begin() + static_cast<std::ptrdiff_t>(place);
  return printable(std::string(begin, std::find(begin, answer.end(), std::uint8_t{0})));
}

Bus busOf(std::uint8_t bus) {
  switch (bus) {
    case BusTypeScsi:
    case BusTypeSas:
      return Bus::Scsi;
    case BusTypeAta:
    case BusTypeSata:
      return Bus::Ata;
    case BusTypeUsb:
      return Bus::Usb;
    case BusTypeVirtual:
    case BusTypeFileBackedVirtual:
      return Bus::Virtual;
    case kNvme:
      return Bus::Nvme;
    default:
      return Bus::Other;
  }
}

void readNames(const Drive& drive, Disk& disk) {
  const auto answer = drive.property(StorageDeviceProperty);
  const auto names = head<STORAGE_DEVICE_DESCRIPTOR>(answer);
  disk.model =
      printable(textAt(answer, names.VendorIdOffset) + " " + textAt(answer, names.ProductIdOffset));
  disk.serial = textAt(answer, names.SerialNumberOffset);
  disk.firmware = textAt(answer, names.ProductRevisionOffset);
  disk.bus = busOf(static_cast<std::uint8_t>(names.BusType));
}

void readGeometry(const Drive& drive, Disk& disk) {
  const auto geometry =
      head<DISK_GEOMETRY_EX>(drive.ask(IOCTL_DISK_GET_DRIVE_GEOMETRY_EX, nullptr, 0));
  disk.bytes = static_cast<std::uint64_t>(std::max<LONGLONG>(geometry.DiskSize.QuadPart, 0));
  if (geometry.Geometry.BytesPerSector > 0) disk.logicalBlock = geometry.Geometry.BytesPerSector;
  const auto blocks =
      head<STORAGE_ACCESS_ALIGNMENT_DESCRIPTOR>(drive.property(StorageAccessAlignmentProperty));
  disk.physicalBlock = std::max<std::uint32_t>(disk.logicalBlock, blocks.BytesPerPhysicalSector);
  disk.alignmentOffset = blocks.BytesOffsetForSectorAlignment;
  disk.rotational =
      head<DEVICE_SEEK_PENALTY_DESCRIPTOR>(drive.property(StorageDeviceSeekPenaltyProperty))
          .IncursSeekPenalty;
}

void readPartitions(const Drive& drive, Disk& disk) {
  const auto answer = drive.ask(IOCTL_DISK_GET_DRIVE_LAYOUT_EX, nullptr, 0);
  const std::size_t first = offsetof(DRIVE_LAYOUT_INFORMATION_EX, PartitionEntry);
  const auto layout = head<DRIVE_LAYOUT_INFORMATION_EX>(answer);
  for (DWORD i = 0; i < layout.PartitionCount; ++i) {
    const std::size_t place = first + i * sizeof(PARTITION_INFORMATION_EX);
    if (place + sizeof(PARTITION_INFORMATION_EX) > answer.size()) return;
    PARTITION_INFORMATION_EX partition{};
    std::memcpy(&partition, answer.data() + place, sizeof partition);
    if (partition.PartitionNumber == 0) continue;
    disk.partitions.push_back({"partition " + std::to_string(partition.PartitionNumber),
                               static_cast<std::uint64_t>(partition.StartingOffset.QuadPart),
                               static_cast<std::uint64_t>(partition.PartitionLength.QuadPart)});
  }
}

}  // namespace

std::vector<Disk> findMachineDisks() {
  std::vector<Disk> disks;
  for (unsigned number = 0; number < kMostDrives; ++number) {
    Disk disk;
    disk.name = "PhysicalDrive" + std::to_string(number);
    disk.node = "\\\\.\\" + disk.name;
    const Drive drive(disk.node);
    if (!drive.exists()) continue;
    readGeometry(drive, disk);
    if (disk.bytes == 0) continue;
    readNames(drive, disk);
    readPartitions(drive, disk);
    disks.push_back(std::move(disk));
  }
  return disks;
}

}  // namespace providers::disk
