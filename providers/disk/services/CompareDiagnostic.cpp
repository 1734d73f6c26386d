#include "providers/disk/services/CompareDiagnostic.h"

#include <algorithm>
#include <utility>

#include "providers/common/Findings.h"

namespace providers::disk {

namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;
constexpr std::uint64_t kDefaultBytes = 64 * kMebi;
constexpr double kBytesPerSecond = 20e6;  // of a slow disk, each byte written and read twice

DiskTest compareTest() {
  constexpr std::uint16_t kReadWriteRead = 7, kRisky = 5;
  DiskTest test;
  test.type = kReadWriteRead;
  test.name = "Sequential Read-Write-Read Compare";
  test.text = "Writes a scratch file of its own on the disk, reads it past the cache and compares.";
  test.characteristics = {kRisky};
  test.testTypes = {2, 6};
  test.settingsClass = "DIAGS_DiskDriveCompareTestSettings";
  test.settings = {{"HaltOnError", false, false},
                   {"QuickMode", false, false},
                   {"PercentOfTestCoverage", std::uint8_t{100}, false},
                   {"NumberOfBytes", kDefaultBytes, false},
                   {"ScratchFolder", {}, false},
                   {"Seed", {}, false}};
  test.capabilities = {{"Seed", true, false}};
  test.seconds =
      static_cast<std::uint32_t>(static_cast<double>(kDefaultBytes) / kBytesPerSecond) + 1;
  return test;
}

std::uint64_t askedBytes(const RunSettings& settings) {
  constexpr std::uint64_t kFull = 100, kQuick = 5;
  const std::uint64_t given = asNumber(settings.properties.get("NumberOfBytes")).value_or(0);
  const std::uint64_t all = given == 0 ? kDefaultBytes : given;
  const std::uint64_t share =
      all / kFull * settings.coveragePercent + all % kFull * settings.coveragePercent / kFull;
  const std::uint64_t bytes = settings.quick ? share / kQuick : share;
  // Upward: less than was asked for would be no pass.
  const std::uint64_t mebis = bytes / kMebi + (bytes % kMebi > 0 ? 1 : 0);
  return std::clamp(mebis, std::uint64_t{1}, UINT64_MAX / kMebi) * kMebi;
}

std::string verdictText(const BlockVerdict& verdict) {
  switch (verdict.state) {
    case BlockState::Right:
      return "it was right when read again";
    case BlockState::Empty:
      return "there are zeros, as if it had never been written";
    case BlockState::Stale:
      return "there is what was written before: the last write was lost";
    case BlockState::Misdirected:
      return "there is the block of offset " + std::to_string(verdict.found.offset) +
             ": written or read at the wrong place";
    case BlockState::Foreign:
      return "there is a block of another run";
    case BlockState::Corrupt:
      break;
  }
  return countText(verdict.wrongBytes, "wrong byte") + ", the first one at " +
         std::to_string(verdict.firstWrong) +
         formatted(": expected 0x%02x, found 0x%02x", static_cast<unsigned>(verdict.expectedByte),
                   static_cast<unsigned>(verdict.foundByte));
}

std::string faultLine(const CompareFault& fault) {
  return (fault.hard ? "Wrong: " : "Wrong at first, right when read again: ") +
         std::string("offset ") + std::to_string(fault.offset) + " of the scratch file: " +
         (fault.error.empty() ? verdictText(fault.verdict) : fault.error) + "\n";
}

std::string faultLines(const CompareReport& report) {
  std::string lines;
  if (!report.problem.text.empty()) lines += "It could not go on: " + report.problem.text + "\n";
  for (const CompareFault& fault : report.faults) lines += faultLine(fault);
  const std::uint64_t all = report.hardBlocks + report.softBlocks;
  if (all > report.faults.size())
    lines += "and " + countText(all - report.faults.size(), "further block") + "\n";
  if (report.givenUp) lines += "It was given up: to read again what fails takes too long\n";
  return lines;
}

std::string whatToDo(const CompareReport& report, const Disk& disk, bool tooSmall) {
  if (report.hardBlocks > 0)
    return "save the data and replace " + describe(disk) +
           "; if another drive there fails too, replace its controller";
  if (report.problem.ofDrive)
    return "check cables, slot and power of " + describe(disk) +
           ", then run the test again; save the data and replace the drive if it happens again";
  if (report.softBlocks > 0)
    return "check the cables of " + describe(disk) + " and the machine's memory";
  if (!report.problem.text.empty() || tooSmall)
    return "make room on the disk, lift the limit on the size of files, or ask for less "
           "(NumberOfBytes), then run the test again";
  return {};
}

std::vector<Measured> measured(const CompareReport& report) {
  std::vector<Measured> list{{"Duration", report.writeSeconds + report.readSeconds, "s", false}};
  const auto speed = [&list](const char* name, std::uint64_t bytes, double seconds) {
    if (bytes > 0 && seconds > 0)
      list.push_back({name, static_cast<double>(bytes) / static_cast<double>(kMebi) / seconds,
                      "MiB/s", false, Fold::Least});
  };
  speed("WriteThroughput", report.writtenBytes, report.writeSeconds);
  speed("CompareThroughput", report.readBytes, report.readSeconds);
  list.push_back(
      {"WrongBlocks", static_cast<double>(report.hardBlocks), {}, true, Fold::Sum, {}, 0});
  list.push_back(
      {"RecoveredBlocks", static_cast<double>(report.softBlocks), {}, true, Fold::Sum, {}, 0});
  return list;
}

/// Whoever may mount chooses the name of the folder.
std::string withoutControls(std::string text) {
  const auto isControl = [](char letter) {
    return static_cast<unsigned char>(letter) < ' ' || letter == '\x7f';
  };
  std::replace_if(text.begin(), text.end(), isControl, '?');
  return text;
}

CompletionState stateOf(const CompareReport& report, bool short_) {
  if (report.hardBlocks > 0 || report.problem.ofDrive) return CompletionState::Failed;
  if (report.stopped) return CompletionState::Stopped;
  if (!report.problem.text.empty()) return CompletionState::Incomplete;
  if (report.softBlocks > 0) return CompletionState::Warning;
  return short_ ? CompletionState::Incomplete : CompletionState::Ok;
}

Outcome compareOutcome(const CompareReport& report, const OpenedScratch& scratch, const Disk& disk,
                       std::uint64_t seed) {
  const ScratchFile& file = *scratch.file;
  const bool tooSmall = file.bytes() < report.askedBytes;
  Outcome outcome;
  outcome.state = stateOf(report, tooSmall);
  outcome.summary = "Compared " + sizeText(file.bytes()) +
                    formatted(", %u of 2 times", report.generations) +
                    (tooSmall ? ", cut short" : "");
  outcome.text = outcome.summary + ", " + countText(report.hardBlocks, "wrong block") +
                 ": a scratch file in " + withoutControls(file.folder()) + " on " + describe(disk) +
                 "\n";
  if (tooSmall)
    outcome.text += "Cut short by lack of " + scratch.shortage + ": " + sizeText(file.bytes()) +
                    " instead of " + sizeText(report.askedBytes) + "\n";
  outcome.text += "Seed " + std::to_string(seed) + "\n";
  outcome.measured = measured(report);
  if (report.hardBlocks > 0)
    outcome.errors.push_back({"Wrong block", clampCount(report.hardBlocks)});
  if (report.problem.ofDrive) outcome.errors.push_back({"Write failure", 1});
  addFinding(outcome, disk, faultLines(report), whatToDo(report, disk, tooSmall));
  if (report.stopped) outcome.text += "Stopped before the end\n";
  return outcome;
}

}  // namespace

CompareDiagnostic::CompareDiagnostic(CompareSurroundings surroundings)
    : DiskDiagnostic(surroundings.findDisks, compareTest()),
      m_surroundings(std::move(surroundings)) {}

std::string CompareDiagnostic::refuse(const RunSettings& settings) const {
  const Value& folder = settings.properties.get("ScratchFolder");
  if (!isNull(folder) && !asText(folder)) return "ScratchFolder is no text";
  for (const char* name : {"LBAStart", "LBAEnd"})
    if (!isNull(settings.properties.get(name)))
      return std::string(name) + " is not supported: only a scratch file is written";
  return DiskDiagnostic::refuse(settings);
}

/// No disk takes more than it has.
double CompareDiagnostic::passSeconds(const RunSettings& settings) const {
  std::uint64_t largest = 0;
  for (const Disk& disk : disks()) largest = std::max(largest, disk.bytes);
  return static_cast<double>(std::min(askedBytes(settings), largest)) / kBytesPerSecond + 1;
}

Outcome CompareDiagnostic::runOn(const Disk& disk, const RunSettings& settings,
                                 RunControl& control) {
  const std::string folder = asText(settings.properties.get("ScratchFolder")).value_or("");
  ComparePlan plan;
  plan.askedBytes = askedBytes(settings);
  plan.haltOnError = settings.haltOnError;
  plan.unit = std::max<std::size_t>(kScratchBlock, disk.logicalBlock);
  const auto seed = asNumber(settings.properties.get("Seed"));
  plan.seed = seed ? *seed : m_surroundings.seed();
  const OpenedScratch scratch = m_surroundings.open(disk, folder, plan.askedBytes);
  if (!scratch.file)
    return notTested("Not tested: no scratch file", withoutControls(scratch.problem),
                     "give as ScratchFolder a folder on a file system of this disk that can be "
                     "written and has room, then run the test again");
  control.status("Writing and comparing a scratch file on " + disk.name);
  const CompareReport report =
      ComparePass(*scratch.file, plan, m_surroundings.clock, control).run();
  return compareOutcome(report, scratch, disk, plan.seed);
}

}  // namespace providers::disk
