
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "engine/identity/LinuxParts.h"
#include "engine/identity/Words.h"

namespace engine {
namespace {

constexpr std::size_t kMostDisks = 256;

bool begins(const std::string& text, std::string_view with) {
  return text.compare(0, with.size(), with) == 0;
}

/// Disks proper are devices; what is made of something else has none. A path to a disk that has
/// several is hidden, and part of a card is no card.
bool isDisk(const SystemFolder& disk, const std::string& name) {
  for (const std::string_view other : {"loop", "ram", "zram", "dm-", "md", "sr", "fd", "nbd"}) {
    if (begins(name, other)) return false;
  }
  if (begins(name, "mmcblk") && name.find_first_not_of("0123456789", 6) != std::string::npos) {
    return false;
  }
  return disk.has("device") && disk.text("hidden") != "1";
}

/// Behind four bytes, of which the second names the page and the last two give its length.
std::string serialOfPage(const std::string& page) {
  constexpr char kSerialPage = '\x80';
  constexpr std::size_t kHeader = 4;
  if (page.size() < kHeader || page[1] != kSerialPage) return {};
  const auto length = static_cast<std::size_t>(static_cast<unsigned char>(page[2]) << 8U |
                                               static_cast<unsigned char>(page[3]));
  return tellingSerial(std::string_view(page).substr(kHeader, length));
}

/// What the device manager found out when it met the disk.
std::string serialOfRecord(const std::string& record) {
  for (const std::string_view key : {"\nE:ID_SERIAL_SHORT=", "\nE:ID_SERIAL="}) {
    const std::size_t at = record.find(key);
    if (at == std::string::npos) continue;
    const std::string_view value = std::string_view(record).substr(at + key.size());
    return tellingSerial(value.substr(0, value.find('\n')));
  }
  return {};
}

/// Not from the disk's own file `serial`: a virtual disk is asked for it anew at each reading.
std::string serialOf(const SystemFolder& root, const SystemFolder& disk) {
  constexpr std::size_t kLongestPage = 4096;
  constexpr std::size_t kLongestRecord = 65536;
  const SystemFolder device = disk / "device";
  std::string serial = device.serial("serial");
  if (serial.empty()) serial = serialOfPage(device.bytes("vpd_pg80", kLongestPage));
  if (!serial.empty()) return serial;
  const std::string number = disk.text("dev");
  if (number.find('/') != std::string::npos) return {};
  return serialOfRecord("\n" + (root / "run/udev/data").bytes("b" + number, kLongestRecord));
}

std::string firstText(const SystemFolder& folder, std::initializer_list<const char*> names) {
  for (const char* const name : names) {
    std::string text = folder.text(name);
    if (!text.empty()) return text;
  }
  return {};
}

std::uint64_t bytesOf(const SystemFolder& disk) {
  constexpr std::uint64_t kSector = 512;
  constexpr std::uint64_t kMost = UINT64_MAX / kSector;
  const std::uint64_t sectors = std::strtoull(disk.text("size").c_str(), nullptr, 10);
  return sectors > kMost ? 0 : sectors * kSector;
}

/// Where there is a bus to which disks are translated, its name stands for their maker's.
std::string makerOf(const SystemFolder& device) {
  std::string maker = device.text("vendor");
  const bool isBus = maker == "ATA" || maker == "USB" || begins(maker, "0x");
  return isBus ? std::string() : maker;
}

Part diskOf(const SystemFolder& root, const SystemFolder& disk, const std::string& name) {
  const SystemFolder device = disk / "device";
  Part part;
  part.kind = "disk";
  part.location = name;
  part.manufacturer = makerOf(device);
  part.model = firstText(device, {"model", "name"});
  part.name = joined({name, joined({part.model, diskSize(bytesOf(disk))}, " ")}, ": ");
  part.version = firstText(device, {"firmware_rev", "fwrev", "rev"});
  part.serial = serialOf(root, disk);
  return part;
}

}  // namespace

std::vector<Part> disksUnder(const SystemFolder& root) {
  const SystemFolder all = root / "sys/block";
  std::vector<Part> parts;
  for (const std::string& name : all.names()) {
    if (parts.size() == kMostDisks) break;
    const SystemFolder disk = all / name;
    if (isDisk(disk, name)) parts.push_back(diskOf(root, disk, name));
  }
  return parts;
}

}  // namespace engine
