#include "providers/disk/services/DiskDiagnostic.h"

#include <algorithm>
#include <array>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/common/Step.h"

namespace providers::disk {

namespace {

constexpr FamilyFacts kFamily{"DIAGS_DiskDrive", "DIAGS: Disk ", "Disk Drive ", "DiskDriveTestType",
                              "DIAGS_DiskDriveStatusTestSettings"};

Device deviceOf(const Disk& disk) {
  constexpr std::uint16_t kHardDisk = 2, kSolidState = 3, kOther = 1;
  constexpr std::uint64_t kKilobyte = 1000;
  Device device;
  device.id = disk.name;
  device.name = displayName(disk);
  const std::uint16_t type = disk.bus == Bus::Virtual ? kOther
                             : disk.rotational        ? kHardDisk
                                                      : kSolidState;
  device.properties = {{"DiskType", type, false},
                       {"DefaultBlockSize", std::uint64_t{disk.logicalBlock}, false},
                       {"MaxMediaSize", disk.bytes / kKilobyte, false}};
  return device;
}

}  // namespace

DiskDiagnostic::DiskDiagnostic(FindDisks findDisks, const DiskTest& test)
    : m_findDisks(std::move(findDisks)), m_description(describeTest(kFamily, test)) {}

std::vector<Device> DiskDiagnostic::devices() const {
  std::vector<Device> devices;
  for (const Disk& disk : m_findDisks())
    if (suits(disk)) devices.push_back(deviceOf(disk));
  return devices;
}

std::string DiskDiagnostic::refuse(const RunSettings& settings) const {
  for (const char* name : {"NumberOfBytes", "LBAStart", "LBAEnd", "Seed"}) {
    const Value& value = settings.properties.get(name);
    if (!isNull(value) && !asNumber(value)) return std::string(name) + " is no number";
  }
  const auto first = asNumber(settings.properties.get("LBAStart"));
  const auto last = asNumber(settings.properties.get("LBAEnd"));
  if (first && last && *last < *first) return "LBAEnd is less than LBAStart";
  for (const char* name : {"DataSizes", "DataPatterns"})
    if (!isNull(settings.properties.get(name))) return std::string(name) + " is not supported";
  return {};
}

Outcome DiskDiagnostic::run(const Device& device, const RunSettings& settings,
                            RunControl& control) {
  std::vector<Disk> disks = m_findDisks();
  const auto disk = std::find_if(disks.begin(), disks.end(), [&device](const Disk& candidate) {
    return candidate.name == device.id;
  });
  if (disk == disks.end())
    return notTested("Not tested: the disk is gone", "there is no disk " + device.id + " any more",
                     "check cables, slot and power of " + device.id + ", then run the test again");
  askSerial(*disk);
  return runOn(*disk, settings, control);
}

Outcome notOpened(const std::string& problem) {
  return notTested("Not tested: the disk cannot be opened", problem,
                   "run the test as root or administrator; in a container, hand the device in");
}

void addFinding(Outcome& outcome, const Disk& disk, const std::string& lines,
                const std::string& whatToDo) {
  if (lines.empty() && whatToDo.empty()) return;
  Note note;
  note.type = outcome.state == CompletionState::Failed       ? RecordType::DeviceErrors
              : outcome.state == CompletionState::Incomplete ? RecordType::ServiceErrors
                                                             : RecordType::Warnings;
  note.text = lines;
  if (!whatToDo.empty()) {
    note.text += "What to do: " + whatToDo + "\n";
    note.correctiveAction = step(whatToDo);
    // What was not tested has no fault.
    if (outcome.state != CompletionState::Incomplete) note.part = {{}, disk.slot, disk.serial};
  }
  note.errors = outcome.errors;
  outcome.text += note.text;
  outcome.notes.push_back(std::move(note));
}

std::string sizeText(std::uint64_t bytes) {
  static constexpr std::array<const char*, 5> kUnits{"KiB", "MiB", "GiB", "TiB", "PiB"};
  constexpr double kKibi = 1024;
  double value = static_cast<double>(bytes) / kKibi;
  std::size_t unit = 0;
  for (; value >= kKibi && unit + 1 < kUnits.size(); ++unit) value /= kKibi;
  const bool whole = value == static_cast<double>(static_cast<std::uint64_t>(value));
  return formatted(whole ? "%.0f %s" : "%.1f %s", value, kUnits[unit]);
}

}  // namespace providers::disk
