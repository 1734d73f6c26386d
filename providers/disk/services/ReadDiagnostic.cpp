#include "providers/disk/services/ReadDiagnostic.h"

#include <algorithm>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/disk/services/ReadReportText.h"

namespace providers::disk {

namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;
constexpr std::uint32_t kSmallRead = 4096;
constexpr double kSecondsAround = 1;
constexpr double kLeastLimit = 30;  // seconds that a pass has in any case
constexpr double kLimitFactor = 3;  // beyond what it is expected to take

/// What differs between the two.
struct Manner {
  SourceShape shape;
  std::uint64_t defaultBytes;
  double bytesPerSecond;  ///< of a slow disk, for the estimate
};

Manner mannerOf(ReadOrder order) {
  if (order == ReadOrder::Sequential) return {{8, kMebi}, 1024 * kMebi, 100e6};
  return {{32, kSmallRead}, 16 * kMebi, 400.0 * kSmallRead};
}

/// A disk with larger blocks can be read in those alone.
std::uint32_t smallReadOf(const Disk& disk) { return std::max(kSmallRead, disk.logicalBlock); }

SourceShape shapeOf(ReadOrder order, const Disk& disk) {
  SourceShape shape = mannerOf(order).shape;
  shape.slotBytes = std::max(shape.slotBytes, smallReadOf(disk));
  return shape;
}

DiskTest testOf(ReadOrder order) {
  constexpr std::uint16_t kSequentialRead = 5, kRandomRead = 6;
  const bool sequential = order == ReadOrder::Sequential;
  const Manner manner = mannerOf(order);
  DiskTest test;
  test.type = sequential ? kSequentialRead : kRandomRead;
  test.name = sequential ? "Sequential Read" : "Random Read";
  test.text =
      sequential
          ? "Reads a share of the disk in large blocks, upward, in zones that are spread over it."
          : "Reads small blocks in random order all over the disk, many at a time.";
  test.testTypes = {2, 6};
  test.settingsClass = "DIAGS_DiskDriveReadTestSettings";
  test.settings = {{"HaltOnError", false, false},
                   {"QuickMode", false, false},
                   {"PercentOfTestCoverage", std::uint8_t{100}, false},
                   {"NumberOfBytes", manner.defaultBytes, false},
                   {"LBAStart", {}, false},
                   {"LBAEnd", {}, false},
                   {"Seed", {}, false}};
  test.capabilities = {{"Seed", true, false}, {"Region", true, false}};
  test.seconds = static_cast<std::uint32_t>(
      static_cast<double>(manner.defaultBytes) / manner.bytesPerSecond + kSecondsAround);
  return test;
}

std::uint64_t share(std::uint64_t bytes, const RunSettings& settings) {
  constexpr std::uint64_t kFull = 100;
  constexpr std::uint64_t kQuick = 5;
  const std::uint64_t part =
      bytes / kFull * settings.coveragePercent + bytes % kFull * settings.coveragePercent / kFull;
  return settings.quick ? part / kQuick : part;
}

/// What the settings ask for; 0: all of the region.
std::uint64_t askedBytes(const RunSettings& settings) {
  return asNumber(settings.properties.get("NumberOfBytes")).value_or(0);
}

/// Where on the disk; nothing where it has no such blocks.
std::optional<Region> regionOf(const Disk& disk, const RunSettings& settings) {
  const std::uint64_t blocks = disk.bytes / disk.logicalBlock;
  const std::uint64_t first = asNumber(settings.properties.get("LBAStart")).value_or(0);
  const std::uint64_t last = asNumber(settings.properties.get("LBAEnd")).value_or(blocks - 1);
  if (blocks == 0 || first > last || last >= blocks) return std::nullopt;
  return Region{first * disk.logicalBlock, (last + 1) * disk.logicalBlock};
}

/// What is read of the region.
std::uint64_t wantedBytes(const Region& region, const RunSettings& settings) {
  const std::uint64_t asked = askedBytes(settings);
  return share(asked == 0 ? region.bytes() : std::min(asked, region.bytes()), settings);
}

std::unique_ptr<Extents> extentsOf(ReadOrder order, const Region& region, std::uint64_t wanted,
                                   const Disk& disk, std::uint64_t seed) {
  const std::uint32_t unit = std::max(kSmallRead, disk.physicalBlock);
  const std::uint32_t small = smallReadOf(disk);
  if (order == ReadOrder::Random) {
    const std::uint64_t reads = wanted / small + (wanted % small > 0 ? 1 : 0);
    return std::make_unique<RandomExtents>(region, std::max<std::uint64_t>(reads, 1), small, seed);
  }
  SequentialExtents::Sizes sizes;
  sizes.alignment = unit;
  return std::make_unique<SequentialExtents>(region, std::max<std::uint64_t>(wanted, 1), sizes,
                                             seed);
}

ReadPlan planOf(const Disk& disk, const RunSettings& settings, double passSeconds) {
  constexpr double kSlowRotating = 0.5;
  constexpr double kSlowFlash = 0.2;
  ReadPlan plan;
  plan.logicalBlock = disk.logicalBlock;
  plan.seconds = std::max(kLeastLimit, kLimitFactor * passSeconds);
  plan.slowSeconds = disk.rotational ? kSlowRotating : kSlowFlash;
  plan.haltOnError = settings.haltOnError;
  return plan;
}

}  // namespace

ReadDiagnostic::ReadDiagnostic(ReadSurroundings surroundings, ReadOrder order)
    : DiskDiagnostic(surroundings.findDisks, testOf(order)),
      m_surroundings(std::move(surroundings)),
      m_order(order) {}

/// Of the disk that takes longest: no disk has more to read than it has.
double ReadDiagnostic::passSeconds(const RunSettings& settings) const {
  std::uint64_t most = 0;
  for (const Disk& disk : disks())
    if (const auto region = regionOf(disk, settings))
      most = std::max(most, wantedBytes(*region, settings));
  return secondsFor(most);
}

double ReadDiagnostic::secondsFor(std::uint64_t bytes) const {
  return static_cast<double>(bytes) / mannerOf(m_order).bytesPerSecond + kSecondsAround;
}

Outcome ReadDiagnostic::runOn(const Disk& disk, const RunSettings& settings, RunControl& control) {
  const auto region = regionOf(disk, settings);
  if (!region)
    return notTested("Not tested: no such blocks",
                     "The disk has " + countText(disk.bytes / disk.logicalBlock, "logical block") +
                         "; LBAStart or LBAEnd lies beyond them",
                     "choose LBAStart and LBAEnd among the blocks that the disk has");
  const SourceShape shape = shapeOf(m_order, disk);
  OpenedSource opened = m_surroundings.open(disk.node, shape, disk.number);
  if (!opened.source) return notOpened(opened.problem);

  const std::uint64_t wanted = wantedBytes(*region, settings);
  const auto given = asNumber(settings.properties.get("Seed"));
  const std::uint64_t seed = given ? *given : m_surroundings.seed();
  const auto extents = extentsOf(m_order, *region, wanted, disk, seed);
  control.status("Reading " + disk.name);
  ReadPass pass(*opened.source, *extents, planOf(disk, settings, secondsFor(wanted)),
                m_surroundings.clock, control);
  const ReadReport report = pass.run();
  return readOutcome(report,
                     {disk, m_order, shape.slots, opened.source->means(), region->bytes(), seed});
}

}  // namespace providers::disk
