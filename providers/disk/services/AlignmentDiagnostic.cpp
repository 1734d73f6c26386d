#include "providers/disk/services/AlignmentDiagnostic.h"

#include <algorithm>
#include <utility>

#include "providers/common/Findings.h"

namespace providers::disk {

namespace {

constexpr std::uint64_t kFourKibi = 4096;

DiskTest alignmentTest() {
  constexpr std::uint16_t kAlignment = 12;
  DiskTest test;
  test.type = kAlignment;
  test.name = "4K Alignment";
  test.text = "Looks whether the partitions begin where the blocks do that the disk really writes.";
  test.testTypes = {2};
  test.seconds = 1;
  test.looks = true;
  return test;
}

/// Rotating disks whose physical blocks are smaller write those; flash has larger pages than it
/// tells of.
std::uint64_t unitOf(const Disk& disk) {
  return disk.rotational ? disk.physicalBlock
                         : std::max<std::uint64_t>(disk.physicalBlock, kFourKibi);
}

std::uint64_t beyondBoundary(const Disk& disk, const Partition& partition) {
  const std::uint64_t unit = unitOf(disk);
  return (partition.start + unit - disk.alignmentOffset % unit) % unit;
}

std::string partitionLine(const Disk& disk, const Partition& partition) {
  const std::uint64_t beyond = beyondBoundary(disk, partition);
  std::string line = partition.name + " begins at logical block " +
                     std::to_string(partition.start / disk.logicalBlock);
  return line + (beyond == 0 ? ": aligned\n"
                             : ": " + std::to_string(beyond) + " bytes beyond a boundary\n");
}

}  // namespace

AlignmentDiagnostic::AlignmentDiagnostic(FindDisks findDisks)
    : DiskDiagnostic(std::move(findDisks), alignmentTest()) {}

Outcome AlignmentDiagnostic::runOn(const Disk& disk, const RunSettings&, RunControl& control) {
  Outcome outcome;
  std::uint64_t unaligned = 0;
  std::string lines;
  for (const Partition& partition : disk.partitions) {
    lines += partitionLine(disk, partition);
    unaligned += beyondBoundary(disk, partition) != 0 ? 1 : 0;
  }
  const std::string blocks = formatted("%u-byte logical and %u-byte physical blocks",
                                       disk.logicalBlock, disk.physicalBlock);
  outcome.summary = disk.partitions.empty() ? "No partitions"
                                            : countText(unaligned, "unaligned partition") + " of " +
                                                  std::to_string(disk.partitions.size());
  outcome.text = outcome.summary + "\n" + describe(disk) + ": " + blocks + ", aligned to " +
                 std::to_string(unitOf(disk)) + "\n";
  outcome.measured = {
      {"UnalignedPartitions", static_cast<double>(unaligned), {}, true, Fold::Most, {}, 0}};
  if (unaligned > 0) {
    outcome.state = CompletionState::Warning;
    addFinding(outcome, disk, lines,
               "move these partitions to a boundary; until then each write at their blocks' ends "
               "costs a read and a second write");
  }
  if (unaligned == 0) outcome.text += lines;
  control.progress(1);
  return outcome;
}

}  // namespace providers::disk
