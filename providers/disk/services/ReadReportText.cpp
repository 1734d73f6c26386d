#include "providers/disk/services/ReadReportText.h"

#include "providers/common/Findings.h"

namespace providers::disk {

namespace {

constexpr double kMilliseconds = 1000;
constexpr double kMebi = 1024.0 * 1024;

bool isCutShort(const ReadReport& report) { return report.triedBytes < report.askedBytes; }

/// Of the region, what came; of what was tried and did not, the lines behind it tell.
std::string coverage(const ReadReport& report, const ReadCircumstances& with) {
  const double share = with.regionBytes == 0 ? 0
                                             : 100.0 * static_cast<double>(report.gotBytes) /
                                                   static_cast<double>(with.regionBytes);
  std::string text = "Read " + sizeText(report.gotBytes) + " of " + sizeText(with.regionBytes);
  return text + formatted(share < 0.1 ? " (%.2g %%)" : " (%.1f %%)", share);
}

double throughput(const ReadReport& report) {
  return report.seconds > 0 ? static_cast<double>(report.readBytes) / kMebi / report.seconds : 0;
}

double readRate(const ReadReport& report) {
  return report.seconds > 0 ? static_cast<double>(report.reads) / report.seconds : 0;
}

std::string speedLine(const ReadReport& report, const ReadCircumstances& with) {
  return countText(report.reads, "read") + formatted(", %u in flight by ", with.inFlight) +
         with.means +
         formatted(": %.1f MiB/s, %.0f reads/s in %.1f s\n", throughput(report), readRate(report),
                   report.seconds);
}

std::string latencyLine(const ReadReport& report, const ReadCircumstances& with) {
  if (!report.slowest) return {};
  return formatted(
             "Half of the reads took up to %.3g ms, 99 %% up to %.3g ms, the slowest one %.3g ms, ",
             report.latencies.percentile(0.5) * kMilliseconds,
             report.latencies.percentile(0.99) * kMilliseconds,
             report.latencies.most() * kMilliseconds) +
         "at logical block " +
         std::to_string(report.slowest->extent.offset / with.disk.logicalBlock) + "\n";
}

std::string blocksText(std::uint64_t first, std::uint64_t count) {
  if (count == 1) return "logical block " + std::to_string(first);
  return "logical blocks " + std::to_string(first) + " to " + std::to_string(first + count - 1) +
         " (" + countText(count, "block") + ")";
}

std::string blocksText(const Extent& extent, const Disk& disk) {
  return blocksText(extent.offset / disk.logicalBlock, extent.bytes / disk.logicalBlock);
}

std::string faultLine(const ReadFault& fault) {
  const std::string where =
      (fault.located ? "" : "somewhere in ") + blocksText(fault.firstBlock, fault.blocks);
  const char* const what = !fault.settled ? "Failed, and not looked into before the end: "
                           : fault.hard   ? "Unreadable: "
                                          : "Read only when tried again: ";
  return what + where + ": " + errorText(fault.error) + "\n";
}

std::string slowLine(const SlowRead& slow, const Disk& disk) {
  return "Slow: " + blocksText(slow.extent, disk) +
         formatted(": %.0f ms, read again alone %.0f ms at best\n",
                   slow.firstSeconds * kMilliseconds, slow.againSeconds * kMilliseconds);
}

std::string faultLines(const ReadReport& report, const Disk& disk) {
  std::string lines;
  if (report.gone)
    lines += "The drive stopped answering at " + blocksText(*report.gone, disk) + "\n";
  if (!report.problem.empty()) lines += "It could not go on: " + report.problem + "\n";
  if (report.stuck) lines += "A read never came back: " + blocksText(*report.stuck, disk) + "\n";
  for (const ReadFault& fault : report.faults) lines += faultLine(fault);
  if (report.furtherFaults > 0)
    lines += "and " + countText(report.furtherFaults, "further place") + "\n";
  for (const SlowRead& slow : report.slow) lines += slowLine(slow, disk);
  return lines;
}

bool isFailed(const ReadReport& report) {
  return report.hardBlocks > 0 || report.gone || report.stuck;
}

std::string whatToDo(const ReadReport& report, const Disk& disk) {
  if (report.gone || report.stuck)
    return "check cables, slot and power of " + describe(disk) +
           ", then run the test again; replace the drive if it happens again";
  if (report.hardBlocks > 0) return "save the data and replace " + describe(disk);
  if (report.softBlocks > 0 || !report.slow.empty())
    return "look at the Status and Grown Defects tests of " + describe(disk) +
           "; replace the drive if the same blocks show up again";
  if (!report.problem.empty())
    return "run the test again as root or administrator, when the system has memory to spare";
  if (report.unsettledBlocks > 0)
    return "run the test again, and let it come to its end: a read failed";
  if (report.timeUp && isCutShort(report))
    return "run the test again while nothing else uses the disk; if it is as slow then, look at "
           "the "
           "Status test of " +
           describe(disk);
  return {};
}

std::vector<ErrorTally> tallies(const ReadReport& report) {
  std::vector<ErrorTally> errors;
  const auto add = [&errors](const char* code, std::uint64_t count) {
    if (count > 0) errors.push_back({code, clampCount(count)});
  };
  add("Unreadable block", report.hardBlocks);
  add("Drive gone", report.gone ? 1 : 0);
  add("Read without an end", report.stuck ? 1 : 0);
  return errors;
}

std::vector<Measured> measured(const ReadReport& report) {
  std::vector<Measured> list{
      {"Duration", report.seconds, "s", false},
      {"ReadData", static_cast<double>(report.readBytes) / kMebi, "MiB", false}};
  const auto real = [&list](const char* name, double value, const char* unit, Fold fold) {
    list.push_back({name, value, unit, false, fold});
  };
  if (report.seconds > 0 && report.readBytes > 0) {
    real("Throughput", throughput(report), "MiB/s", Fold::Least);
    real("ReadRate", readRate(report), "1/s", Fold::Least);
  }
  if (report.latencies.count() > 0) {
    real("MedianLatency", report.latencies.percentile(0.5) * kMilliseconds, "ms", Fold::Most);
    real("P99Latency", report.latencies.percentile(0.99) * kMilliseconds, "ms", Fold::Most);
    real("P999Latency", report.latencies.percentile(0.999) * kMilliseconds, "ms", Fold::Most);
    real("SlowestRead", report.latencies.most() * kMilliseconds, "ms", Fold::Most);
  }
  const auto count = [&list](const char* name, std::uint64_t number) {
    list.push_back({name, static_cast<double>(number), {}, true, Fold::Sum, {}, 0});
  };
  count("UnreadableBlocks", report.hardBlocks);
  count("RecoveredBlocks", report.softBlocks);
  count("SlowReads", report.slow.size());
  return list;
}

CompletionState stateOf(const ReadReport& report) {
  if (isFailed(report)) return CompletionState::Failed;
  if (report.stopped) return CompletionState::Stopped;
  if (!report.problem.empty()) return CompletionState::Incomplete;
  if (report.softBlocks > 0 || !report.slow.empty()) return CompletionState::Warning;
  return isCutShort(report) ? CompletionState::Incomplete : CompletionState::Ok;
}

}  // namespace

Outcome readOutcome(const ReadReport& report, const ReadCircumstances& with) {
  Outcome outcome;
  outcome.state = stateOf(report);
  const bool late = isCutShort(report) && report.timeUp;
  outcome.summary = coverage(report, with) + (late ? ", cut short: too slow" : "");
  outcome.text = coverage(report, with) + " of " + describe(with.disk) + ", " +
                 countText(report.hardBlocks, "unreadable block") + "\n";
  if (late)
    outcome.text += "Cut short by lack of time: " + sizeText(report.triedBytes) + " instead of " +
                    sizeText(report.askedBytes) + "\n";
  outcome.text += speedLine(report, with) + latencyLine(report, with) + "Seed " +
                  std::to_string(with.seed) + "\n";
  outcome.measured = measured(report);
  outcome.errors = tallies(report);
  addFinding(outcome, with.disk, faultLines(report, with.disk), whatToDo(report, with.disk));
  if (report.stopped) outcome.text += "Stopped before the end\n";
  return outcome;
}

}  // namespace providers::disk
