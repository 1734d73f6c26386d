#include "providers/disk/finding/SysfsDisks.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <initializer_list>
#include <limits>
#include <sstream>
#include <system_error>
#include <tuple>

#include "providers/common/Findings.h"
#include "providers/common/SysfsFiles.h"

namespace providers::disk {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kSector = 512;  // in which sysfs counts, whatever the disk's block is

/// A number of sectors in bytes.
std::uint64_t readSectors(const fs::path& file) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max() / kSector;
  return std::min(readNumber(file).value_or(0), kMost) * kSector;
}

/// What is no drive of its own: memory, files, arrays and mappings (whose members are tested), and
/// drives whose media are others' affair.
bool isDriveName(const std::string& name) {
  static constexpr std::array<const char*, 16> kOthers{
      "loop", "ram",  "zram", "dm-", "md",     "nbd",  "sr",    "mtdblock",
      "fd",   "drbd", "rbd",  "zd",  "bcache", "pmem", "ublkb", "ubiblock"};
  const bool other = std::any_of(
      kOthers.begin(), kOthers.end(),
      [&name](const std::string& prefix) { return name.compare(0, prefix.size(), prefix) == 0; });
  const bool partOfCard =
      name.find("boot") != std::string::npos || name.find("rpmb") != std::string::npos;
  return !other && !partOfCard;
}

/// Of SCSI peripherals those with blocks to read; others (tapes, optical drives) have a type, too.
bool hasBlocks(const fs::path& folder) {
  const std::string type = readLine(folder / "device/type");
  return type.empty() || type == "0" || type == "14" || type == "20" || type == "SD" ||
         type == "MMC";
}

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

Bus busOf(const Disk& disk, const std::string& path, const std::string& vendor) {
  if (startsWith(disk.name, "nvme")) return Bus::Nvme;
  if (startsWith(disk.name, "mmcblk")) return Bus::Card;
  if (startsWith(disk.name, "vd") || startsWith(disk.name, "xvd")) return Bus::Virtual;
  if (vendor == "ATA") return Bus::Ata;
  if (path.find("/usb") != std::string::npos) return Bus::Usb;
  return startsWith(disk.name, "sd") ? Bus::Scsi : Bus::Other;
}

/// The serial number of a SCSI drive, which the kernel keeps as the page that the drive answered
/// with.
std::string serialOfPage(const std::string& page) {
  constexpr std::size_t kHeader = 4;
  if (page.size() <= kHeader || static_cast<unsigned char>(page[1]) != 0x80) return {};
  const auto length = static_cast<std::size_t>(static_cast<unsigned char>(page[2]) << 8 |
                                               static_cast<unsigned char>(page[3]));
  return printable(page.substr(kHeader, length));
}

std::string firstOf(std::initializer_list<std::string> texts) {
  for (const std::string& text : texts)
    if (!text.empty()) return text;
  return {};
}

void readNames(Disk& disk, const fs::path& folder, const std::string& path) {
  const fs::path device = folder / "device";
  const std::string vendor = readLine(device / "vendor");
  disk.bus = busOf(disk, path, vendor);
  disk.model =
      firstOf({readLine(device / "model"), disk.bus == Bus::Card ? readLine(device / "name") : ""});
  const bool named = disk.bus == Bus::Scsi || disk.bus == Bus::Usb;
  if (named && !vendor.empty()) disk.model = printable(vendor + " " + disk.model);
  if (disk.model.empty() && disk.bus == Bus::Virtual) disk.model = "Virtual Disk";
  disk.serial = firstOf({readLine(device / "serial"), serialOfPage(readAll(device / "vpd_pg80"))});
  if (disk.serial.empty()) disk.serialFile = (folder / "serial").string();
  disk.firmware = firstOf({readLine(device / "firmware_rev"), readLine(device / "rev"),
                           disk.bus == Bus::Card ? readLine(device / "fwrev") : ""});
}

bool isMadeOf(const std::string& text, const char* letters) {
  return !text.empty() && text.find_first_not_of(letters) == std::string::npos;
}

/// "0000:01:00.0"
bool isPciAddress(const std::string& part) {
  return isMadeOf(part, "0123456789abcdef:.") && std::count(part.begin(), part.end(), ':') == 2 &&
         std::count(part.begin(), part.end(), '.') == 1;
}

/// "0:0:1:0"
bool isScsiAddress(const std::string& part) {
  return isMadeOf(part, "0123456789:") && std::count(part.begin(), part.end(), ':') == 3;
}

/// The last part of the path that is such a one: what is nearest to the disk.
std::string lastPart(const std::string& path, bool (*wanted)(const std::string&)) {
  std::string last;
  std::istringstream parts(path);
  for (std::string part; std::getline(parts, part, '/');)
    if (wanted(part)) last = part;
  return last;
}

/// The board's name for the slot that a PCI device is in.
std::string boardSlot(const fs::path& sys, const std::string& pciAddress) {
  if (pciAddress.empty()) return {};
  for (const fs::path& slot : childrenOf(sys / "bus/pci/slots")) {
    const std::string address = readLine(slot / "address");
    if (!address.empty() && startsWith(pciAddress, address + "."))
      return printable(slot.filename().string());
  }
  return {};
}

/// The enclosure's name for the slot that a SCSI device is in.
std::string enclosureSlot(const fs::path& device) {
  static const std::string kPrefix = "enclosure_device:";
  for (const fs::path& child : childrenOf(device)) {
    const std::string name = child.filename().string();
    if (startsWith(name, kPrefix)) return printable(name.substr(kPrefix.size()));
  }
  return {};
}

void readPlace(Disk& disk, const fs::path& sys, const fs::path& folder, const std::string& path) {
  disk.pciAddress = lastPart(path, isPciAddress);
  if (disk.bus != Bus::Nvme) disk.scsiAddress = lastPart(path, isScsiAddress);
  disk.slot = firstOf({enclosureSlot(folder / "device"),
                       disk.bus == Bus::Nvme ? boardSlot(sys, disk.pciAddress) : ""});
}

void readGeometry(Disk& disk, const fs::path& folder) {
  disk.bytes = readSectors(folder / "size");
  const auto block = [&folder](const char* file, std::uint64_t otherwise) {
    const std::uint64_t size = readNumber(folder / "queue" / file).value_or(0);
    const bool sane = size >= kSector && size <= (1U << 20) && (size & (size - 1)) == 0;
    return static_cast<std::uint32_t>(sane ? size : otherwise);
  };
  disk.logicalBlock = block("logical_block_size", kSector);
  disk.physicalBlock = std::max(disk.logicalBlock, block("physical_block_size", disk.logicalBlock));
  disk.alignmentOffset = readNumber(folder / "alignment_offset").value_or(0);
  disk.rotational = readNumber(folder / "queue/rotational").value_or(0) != 0;
  disk.readOnly = readNumber(folder / "ro").value_or(0) != 0;
}

/// The number of a device and of all that lies upon it alone: what is written to an array, or to a
/// volume of several disks, may be anywhere.
void addDevices(Disk& disk, const fs::path& folder, unsigned depth = 0) {
  constexpr unsigned kDeepest = 8;
  const std::string number = readLine(folder / "dev");
  if (!number.empty()) disk.devices.push_back(number);
  if (depth == kDeepest) return;
  for (const fs::path& holder : childrenOf(folder / "holders"))
    if (childrenOf(holder / "slaves").size() <= 1) addDevices(disk, holder, depth + 1);
}

/// The kernel names a partition after its disk, so that nothing else in the folder need be opened.
void readPartitions(Disk& disk, const fs::path& folder) {
  for (const fs::path& child : childrenOf(folder)) {
    if (!startsWith(child.filename().string(), folder.filename().string())) continue;
    if (!readNumber(child / "partition")) continue;
    disk.partitions.push_back({printable(child.filename().string()), readSectors(child / "start"),
                               readSectors(child / "size")});
    addDevices(disk, child);
  }
  std::sort(disk.partitions.begin(), disk.partitions.end(),
            [](const Partition& left, const Partition& right) { return left.start < right.start; });
}

Disk readDisk(const fs::path& sys, const fs::path& folder) {
  Disk disk;
  disk.name = listable(printable(folder.filename().string()));
  disk.node = "/dev/" + folder.filename().string();
  std::replace(disk.node.begin(), disk.node.end(), '!', '/');  // as sysfs writes a folder of /dev
  disk.number = readLine(folder / "dev");
  std::error_code ignored;
  const std::string path = fs::canonical(folder, ignored).generic_string();
  readGeometry(disk, folder);
  readNames(disk, folder, path);
  readPlace(disk, sys, folder, path);
  addDevices(disk, folder);
  readPartitions(disk, folder);
  return disk;
}

/// sda before sdaa, nvme2n1 before nvme10n1.
bool namedBefore(const Disk& left, const Disk& right) {
  const auto key = [](const std::string& name) {
    return std::make_tuple(name.substr(0, 2), name.size(), name);
  };
  return key(left.name) < key(right.name);
}

}  // namespace

std::vector<Disk> findSysfsDisks(const std::string& sys) {
  std::vector<Disk> disks;
  const fs::path root(sys);
  for (const fs::path& folder : childrenOf(root / "block")) {
    if (!isDriveName(folder.filename().string()) || !hasBlocks(folder)) continue;
    if (readNumber(folder / "hidden").value_or(0) != 0) continue;
    if (readNumber(folder / "size").value_or(0) == 0) continue;
    disks.push_back(readDisk(root, folder));
  }
  std::sort(disks.begin(), disks.end(), namedBefore);
  return disks;
}

}  // namespace providers::disk
