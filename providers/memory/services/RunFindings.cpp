#include "providers/memory/services/RunFindings.h"

#include <algorithm>
#include <cstdio>

#include "providers/common/Findings.h"

namespace providers::memory {

namespace {

constexpr double kGibibyte = 1024.0 * 1024 * 1024;

template <class... Arguments>
std::string format(const char* pattern, Arguments... arguments) {
  char text[192];
  std::snprintf(text, sizeof text, pattern, arguments...);
  return text;
}

std::string hex(std::uint64_t value) {
  return format("0x%llx", static_cast<unsigned long long>(value));
}

std::string wordText(std::uint64_t value) {
  return format("0x%016llx", static_cast<unsigned long long>(value));
}

bool fallsShort(const RunFindings& findings, const RunFrame& frame) {
  return findings.report.testedBytes < frame.askedBytes;
}

std::string coverage(const MemoryReport& report, const MemorySize& size) {
  const std::string what = sizeText(report.testedBytes) + " of " + sizeText(size.installed);
  // Where not all sweeps were whole, it was no more than begun.
  if (report.sweeps < report.plannedSweeps) return "Began to test " + what;
  const double share = size.installed == 0 ? 0
                                           : 100.0 * static_cast<double>(report.testedBytes) /
                                                 static_cast<double>(size.installed);
  return "Tested " + what + format(" (%.1f %%)", share);
}

std::string summary(const RunFindings& findings, const RunFrame& frame) {
  const std::string text = coverage(findings.report, frame.size);
  return fallsShort(findings, frame) ? text + ", cut short: low memory" : text;
}

/// In GiB/s.
double bandwidth(const MemoryReport& report) {
  return report.seconds > 0 ? static_cast<double>(report.bytesChecked) / kGibibyte / report.seconds
                            : 0;
}

std::string workLines(const RunFindings& findings, const RunFrame& frame) {
  const MemoryReport& report = findings.report;
  std::string text = coverage(report, frame.size) + ", " + countText(report.errors, "error") + "\n";
  if (fallsShort(findings, frame)) {
    text += "Cut short by lack of memory: " + sizeText(report.testedBytes) + " instead of " +
            sizeText(frame.askedBytes) + ", with " + sizeText(frame.size.available) +
            " available\n";
  }
  text += std::to_string(report.sweeps) + " of " + countText(report.plannedSweeps, "sweep") +
          " on " + countText(frame.threads, "processor") + " (" + frame.kernels +
          "): " + sizeText(report.bytesChecked) + " written and checked" +
          format(" at %.1f GiB/s\n", bandwidth(report));
  if (frame.refusedThreads > 0)
    text += "On " + countText(frame.threads + frame.refusedThreads, "processor") +
            " it was to be: the system started no more threads\n";
  text += frame.whyNotLocked.empty() ? "Memory locked in place"
                                     : "Memory not locked in place: " + frame.whyNotLocked;
  text += ", seed " + std::to_string(frame.seed) + "\n";
  return text;
}

std::string bitList(std::uint64_t bits) {
  std::string list;
  for (unsigned bit = 0; bit < 64; ++bit)
    if (bits >> bit & 1) list += (list.empty() ? "" : ", ") + std::to_string(bit);
  return list.empty() ? "none" : list;
}

std::string faultText(const PlacedPage& placed) {
  const MemoryFault& fault = placed.page.first;
  std::string text = "Address " + hex(placed.address) + ": wrote " + wordText(fault.expected) +
                     ", read " + wordText(fault.actual);
  if (fault.expected == fault.actual) return text + " only when it was read again\n";
  return text + ", failing bits " + bitList(fault.expected ^ fault.actual) + "\n";
}

std::string physicalText(const PhysicalPlace& physical) {
  return physical.address ? "at physical address " + hex(*physical.address)
                          : "physical address not known: " + physical.whyNot;
}

std::string moduleText(const PlacedPage& placed) {
  if (placed.modules.empty()) return "Memory module not known: " + placed.whyNoModule;
  std::string names;
  for (const MemoryModule& module : placed.modules)
    names += (names.empty() ? "" : ", ") + moduleName(module);
  return placed.modules.size() == 1
             ? "Memory module " + names
             : "One of " + countText(placed.modules.size(), "memory module") + ": " + names;
}

std::string retestText(const RetestResult& retest) {
  if (retest.rounds == 0)
    return retest.wasPlanned ? "Not tested alone, since the run was stopped"
                             : "Not tested alone, since its content would rest for too long";
  const std::string text = "Tested alone " + countText(retest.rounds, "time") + ": ";
  if (!retest.hard()) return text + "no error came back, a soft error";
  return text + "failed " + countText(retest.failed, "time") + ", a hard fault, failing bits " +
         bitList(retest.bits);
}

std::string pageLines(const PlacedPage& placed) {
  return faultText(placed) + "  " + physicalText(placed.physical) + ", " +
         countText(placed.page.errors, "error") + " on this page, failing bits " +
         bitList(placed.page.bits) + "\n  " + moduleText(placed) + "\n  " +
         retestText(placed.retest) + "\n";
}

bool isHard(const RunFindings& findings) {
  return std::any_of(findings.pages.begin(), findings.pages.end(),
                     [](const PlacedPage& placed) { return placed.retest.hard(); });
}

/// The modules that answer for a page alone, each once: of pages with hard faults, or where there
/// are none, of the others.
std::vector<MemoryModule> modulesOf(const RunFindings& findings) {
  const bool hard = isHard(findings);
  std::vector<MemoryModule> modules;
  for (const PlacedPage& placed : findings.pages) {
    if (placed.retest.hard() != hard || placed.modules.size() != 1) continue;
    const MemoryModule& one = placed.modules.front();
    const bool known = std::any_of(modules.begin(), modules.end(), [&one](const auto& other) {
      return other.handle == one.handle;
    });
    if (!known) modules.push_back(one);
  }
  return modules;
}

std::string joined(const std::vector<MemoryModule>& modules) {
  std::string text;
  for (const MemoryModule& module : modules)
    text += (text.empty() ? "" : " and ") + moduleName(module);
  return text;
}

/// Where no address leads to a module: the only one of which a memory controller counted errors
/// meanwhile. A row of chips may be part of several.
const ErrorCounter* countedModule(const RunFindings& findings) {
  if (findings.counted.size() != 1) return nullptr;
  const ErrorCounter& one = findings.counted.front();
  return one.place.find("/dimm") == std::string::npos ? nullptr : &one;
}

/// What a technician looks for, where it is clear which one it is.
FaultyPart faultyPart(const RunFindings& findings) {
  const std::vector<MemoryModule> modules = modulesOf(findings);
  const ErrorCounter* const counted = countedModule(findings);
  if (modules.empty() && counted) return {"Memory module " + counted->place, counted->label, {}};
  if (modules.size() != 1) return {};
  const MemoryModule& module = modules.front();
  const std::string type = module.part.empty() ? "" : " " + module.part;
  return {"Memory module" + type, module.locator.empty() ? module.bank : module.locator,
          module.serial};
}

/// What a technician is to do.
std::string correctiveAction(const RunFindings& findings) {
  const bool hard = isHard(findings);
  const std::vector<MemoryModule> modules = modulesOf(findings);
  const ErrorCounter* const counted = countedModule(findings);
  const std::string module = modules.empty() && counted
                                 ? counted->name() + ", whose errors its controller counted"
                                 : joined(modules);
  if (hard && !module.empty()) return "Replace memory module " + module;
  if (hard)
    return "Replace the memory module that has these addresses; where that is not known, test the "
           "modules one at a time";
  // Pages that are right alone: a fault that is between pages stays, one of a moment does not.
  if (findings.pages.size() > 1)
    return "Run the test again: if errors come back on pages that are right when tested alone, "
           "addresses lead to wrong cells; reseat the memory modules, then replace them";
  if (module.empty())
    return "Run the test again and watch the counters of corrected errors; if errors come back, "
           "replace the memory module that has these addresses";
  return "Run the test again and watch memory module " + module +
         "; replace it if errors come back";
}

std::string countedLines(const std::vector<ErrorCounter>& counted) {
  std::string text;
  for (const ErrorCounter& counter : counted)
    text += "Counted meanwhile by the memory controller: " + counter.name() + ", " +
            countText(counter.corrected, "corrected error") + ", " +
            countText(counter.uncorrected, "uncorrected error") + "\n";
  return text;
}

void addFaults(const RunFindings& findings, Outcome& outcome) {
  outcome.errors.push_back({"Memory error", clampCount(findings.report.errors)});
  Note note;
  std::uint64_t told = 0;
  for (const PlacedPage& placed : findings.pages) {
    note.text += pageLines(placed);
    told += placed.page.errors;
  }
  if (findings.report.errors > told)
    note.text += "and " + countText(findings.report.errors - told, "error") + " on other pages\n";
  note.correctiveAction = correctiveAction(findings) + "\n";
  note.part = faultyPart(findings);
  note.text += "Corrective action: " + note.correctiveAction;
  note.errors = outcome.errors;
  outcome.text += note.text;
  outcome.notes.push_back(note);
}

void addTooLittleMemory(Outcome& outcome) {
  outcome.errors.push_back({"Not enough memory", 1});
  outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, outcome.errors});
}

std::vector<Measured> measured(const MemoryReport& report) {
  constexpr double kMebibyte = 1024.0 * 1024;
  std::vector<Measured> list{{"Duration", report.seconds, "s", false}};
  if (report.sweeps == report.plannedSweeps)
    list.push_back({"TestedMemory", static_cast<double>(report.testedBytes) / kMebibyte, "MiB",
                    true, Fold::Least});
  if (report.bytesChecked > 0 && report.seconds > 0)
    list.push_back({"Bandwidth", bandwidth(report), "GiB/s", false, Fold::Least});
  list.push_back({"Sweeps", static_cast<double>(report.sweeps)});
  list.push_back({"Errors", static_cast<double>(report.errors), {}, true, Fold::Sum, {}, 0});
  return list;
}

}  // namespace

std::string sizeText(std::uint64_t bytes) {
  constexpr std::uint64_t kMebibyte = std::uint64_t{1} << 20;
  if (bytes < 1024 * kMebibyte) return std::to_string(bytes / kMebibyte) + " MiB";
  return format("%.1f GiB", static_cast<double>(bytes) / kGibibyte);
}

Outcome memoryOutcome(const RunFindings& findings, const RunFrame& frame) {
  Outcome outcome;
  outcome.summary = summary(findings, frame);
  outcome.text = workLines(findings, frame) + countedLines(findings.counted);
  outcome.measured = measured(findings.report);
  if (findings.report.errors > 0) {
    outcome.state = CompletionState::Failed;
    addFaults(findings, outcome);
  } else if (findings.report.stopped) {
    outcome.state = CompletionState::Stopped;
    outcome.text += "Stopped before the end\n";
  } else if (fallsShort(findings, frame)) {
    // Nothing speaks against the memory: whoever reads a warning takes it for broken.
    outcome.state = CompletionState::Incomplete;
    addTooLittleMemory(outcome);
  }
  return outcome;
}

Outcome stoppedOutcome(const RunFrame& frame) {
  MemoryReport none;
  none.plannedSweeps = 1;  // not one was made
  Outcome outcome;
  outcome.state = CompletionState::Stopped;
  outcome.summary = "Stopped before memory was tested";
  outcome.text = "Stopped before " + sizeText(frame.askedBytes) + " of " +
                 sizeText(frame.size.installed) + " was tested, seed " +
                 std::to_string(frame.seed) + "\n";
  outcome.measured = measured(none);
  return outcome;
}

Outcome noMemoryOutcome(const RunFrame& frame) {
  Outcome outcome;
  outcome.state = CompletionState::Incomplete;
  outcome.summary = "Not tested: only " + sizeText(frame.size.available) + " of " +
                    sizeText(frame.size.installed) + " memory available";
  outcome.text = outcome.summary + "\n";
  addTooLittleMemory(outcome);
  return outcome;
}

}  // namespace providers::memory
