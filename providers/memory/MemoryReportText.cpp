#include <algorithm>
#include <cstdio>
#include <limits>

#include "providers/memory/MemoryDiagnostic.h"

namespace providers {

namespace {

constexpr double kGibibyte = 1024.0 * 1024 * 1024;

template <class... Arguments>
std::string format(const char* pattern, Arguments... arguments) {
  char text[192];
  std::snprintf(text, sizeof text, pattern, arguments...);
  return text;
}

std::string count(std::uint64_t number, const char* thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

std::string coverage(const MemoryReport& report, const MemorySize& size) {
  return sizeText(report.testedBytes) + " of " + sizeText(size.usable);
}

/// What was gone over. Without a whole round, it was no more than begun.
std::string tested(const MemoryReport& report, const MemorySize& size) {
  if (report.rounds == 0) return "Began to test " + coverage(report, size);
  const double share = size.usable == 0 ? 0
                                        : 100.0 * static_cast<double>(report.testedBytes) /
                                              static_cast<double>(size.usable);
  return "Tested " + coverage(report, size) + format(" (%.1f %%)", share);
}

bool lacksMemory(const MemoryShare& share) { return share.givenBytes < share.askedBytes; }
bool lacksTime(const MemoryReport& report, const MemoryShare& share) {
  return report.testedBytes < share.givenBytes;
}

/// Has room for sizes up to 10000.0 GiB.
std::string summary(const MemoryReport& report, const MemoryShare& share) {
  std::string text = tested(report, share.size);
  if (lacksMemory(share)) return text + ", cut short: low memory";
  if (lacksTime(report, share)) return text + ", cut short: too slow";
  return text;
}

std::string cutShort(const MemoryReport& report, const MemoryShare& share) {
  std::string lines;
  if (lacksMemory(share)) {
    lines += "Cut short by lack of memory: " + sizeText(share.givenBytes) + " instead of " +
             sizeText(share.askedBytes) + ", with " + sizeText(share.size.available) +
             " available\n";
  }
  if (lacksTime(report, share)) {
    lines += "Cut short by lack of time: " + sizeText(report.testedBytes) + " instead of " +
             sizeText(share.givenBytes) + "\n";
  }
  return lines;
}

/// In GiB/s.
double bandwidth(std::uint64_t bytes, double seconds) {
  return seconds > 0 ? static_cast<double>(bytes) / kGibibyte / seconds : 0;
}

std::string patternLine(const PatternResult& pattern) {
  return pattern.name + ": " + sizeText(pattern.bytes) +
         format(" at %.1f GiB/s, ", bandwidth(pattern.bytes, pattern.seconds)) +
         count(pattern.errors, "error") + "\n";
}

std::string bitList(std::uint64_t bits) {
  std::string list;
  for (unsigned bit = 0; bit < 64; ++bit) {
    if (bits >> bit & 1) list += (list.empty() ? "" : ", ") + std::to_string(bit);
  }
  return list;
}

std::string faultLine(const MemoryFault& fault) {
  const auto hex = [](std::uint64_t value) {
    return format("0x%016llx", static_cast<unsigned long long>(value));
  };
  return "Offset " + format("0x%llx", static_cast<unsigned long long>(fault.offset)) + ", " +
         fault.pattern + ": wrote " + hex(fault.expected) + ", read " + hex(fault.actual) +
         ", wrong bits " + bitList(fault.expected ^ fault.actual) + "\n";
}

std::uint32_t clampCount(std::uint64_t number) {
  return static_cast<std::uint32_t>(
      std::min<std::uint64_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

void addFaults(const MemoryReport& report, Outcome& outcome) {
  Note note;
  for (const PatternResult& pattern : report.patterns) {
    if (pattern.errors == 0) continue;
    outcome.errors.push_back({"Memory error: " + pattern.name, clampCount(pattern.errors)});
  }
  for (const MemoryFault& fault : report.faults) note.text += faultLine(fault);
  if (report.errors > report.faults.size())
    note.text += "and " + count(report.errors - report.faults.size(), "further error") + "\n";
  note.errors = outcome.errors;
  outcome.text += note.text;
  outcome.notes.push_back(note);
}

Measured bandwidthOf(const std::string& what, std::uint64_t bytes, double seconds) {
  return {measureName(what) + "Bandwidth", bandwidth(bytes, seconds), "GiB/s", false, Fold::Least};
}

/// What was not gone over, since the run was stopped, or in no time, has no bandwidth.
std::vector<Measured> measured(const MemoryReport& report) {
  constexpr double kMebibyte = 1024.0 * 1024;
  PatternResult all;
  std::vector<Measured> bandwidths;
  for (const PatternResult& pattern : report.patterns) {
    all.bytes += pattern.bytes;
    all.seconds += pattern.seconds;
    if (pattern.bytes > 0 && pattern.seconds > 0)
      bandwidths.push_back(bandwidthOf(pattern.name, pattern.bytes, pattern.seconds));
  }
  std::vector<Measured> list{{"Duration", all.seconds, "s", false}};
  if (report.rounds > 0)
    list.push_back({"TestedMemory", static_cast<double>(report.testedBytes) / kMebibyte, "MiB",
                    true, Fold::Least});
  if (all.bytes > 0 && all.seconds > 0) list.push_back(bandwidthOf({}, all.bytes, all.seconds));
  list.insert(list.end(), bandwidths.begin(), bandwidths.end());
  list.push_back({"Rounds", static_cast<double>(report.rounds)});
  list.push_back({"Errors", static_cast<double>(report.errors), {}, true, Fold::Sum, {}, 0});
  return list;
}

}  // namespace

std::string sizeText(std::uint64_t bytes) {
  constexpr std::uint64_t kMebi = std::uint64_t{1024} * 1024;
  if (bytes < 1024 * kMebi) return std::to_string(bytes / kMebi) + " MiB";
  return format("%.1f GiB", static_cast<double>(bytes) / kGibibyte);
}

Outcome memoryOutcome(const MemoryReport& report, const MemoryShare& share, std::uint64_t seed) {
  Outcome outcome;
  outcome.summary = summary(report, share);
  outcome.text = tested(report, share.size) + ", " + count(report.patterns.size(), "pattern") +
                 ", " + count(report.errors, "error") + "\n" + cutShort(report, share);
  outcome.measured = measured(report);
  for (const PatternResult& pattern : report.patterns) outcome.text += patternLine(pattern);
  outcome.text += count(report.rounds, "round") + ", seed " + std::to_string(seed) + ", memory " +
                  (share.locked ? "locked in place" : "not locked in place") + "\n";
  if (report.errors > 0) {
    outcome.state = CompletionState::Failed;
    addFaults(report, outcome);
  } else if (report.stopped) {
    outcome.state = CompletionState::Stopped;
    outcome.text += "Stopped before the end\n";
  }
  return outcome;
}

Outcome noMemoryOutcome(const MemoryShare& share) {
  const MemorySize& size = share.size;
  Outcome outcome;
  outcome.state = CompletionState::Incomplete;
  outcome.summary = chooseTestSize(size, share.askedBytes) == 0
                        ? "Not tested: only " + sizeText(size.available) + " of " +
                              sizeText(size.usable) + " memory are available"
                        : "Not tested: not even 1 MiB can be had, with " +
                              sizeText(size.available) + " available";
  outcome.text = outcome.summary + "\n";
  outcome.errors.push_back({"Not enough memory", 1});
  outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, outcome.errors});
  return outcome;
}

}  // namespace providers
