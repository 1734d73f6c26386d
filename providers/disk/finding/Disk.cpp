#include "providers/disk/finding/Disk.h"

#include <array>
#include <cstdio>

#include "providers/common/SysfsFiles.h"

namespace providers::disk {

std::string describe(const Disk& disk) {
  std::string inside;
  const auto add = [&inside](const std::string& label, const std::string& text) {
    if (!text.empty()) inside += (inside.empty() ? "" : ", ") + label + text;
  };
  add("", disk.model);
  add("serial number ", disk.serial);
  add("slot ", disk.slot);
  if (disk.slot.empty())
    add(disk.scsiAddress.empty() ? "PCI " : "SCSI ",
        disk.scsiAddress.empty() ? disk.pciAddress : disk.scsiAddress);
  return inside.empty() ? disk.name : disk.name + " (" + inside + ")";
}

void askSerial(Disk& disk) {
  if (disk.serial.empty() && !disk.serialFile.empty()) disk.serial = readLine(disk.serialFile);
}

std::string capacityText(std::uint64_t bytes) {
  static constexpr std::array<const char*, 6> kUnits{"B", "kB", "MB", "GB", "TB", "PB"};
  auto value = static_cast<double>(bytes);
  std::size_t unit = 0;
  // What would be shown as 1000.0 is 1.0 of the next unit.
  for (; value >= 999.95 && unit + 1 < kUnits.size(); ++unit) value /= 1000;
  char text[32];
  std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", value, kUnits[unit]);
  return text;
}

std::string displayName(const Disk& disk) {
  std::string name = (disk.model.empty() ? "Disk" : disk.model) + " " + capacityText(disk.bytes);
  for (char& letter : name)
    if (letter == ',' || letter == '|') letter = ' ';
  return name;
}

}  // namespace providers::disk
