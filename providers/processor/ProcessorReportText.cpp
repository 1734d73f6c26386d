#include <cstdio>
#include <map>

#include "providers/processor/ProcessorDiagnostic.h"

namespace providers {

namespace {

std::string count(std::uint64_t number, const char* thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

std::string hex(std::uint64_t value) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%016llx", static_cast<unsigned long long>(value));
  return text;
}

std::string coverage(const ProcessorReport& report, const CpuPackage& package) {
  return "Tested " + std::to_string(report.tested.size()) + " of " +
         count(package.online.size(), "thread");
}

std::string headline(const ProcessorReport& report, const CpuPackage& package) {
  return coverage(report, package) + " of " + displayName(package.model) + ", " +
         count(report.operations, "operation") + ", " + count(report.errors, "error") + "\n";
}

std::string details(const ProcessorReport& report, std::uint64_t seed) {
  char seconds[24];
  std::snprintf(seconds, sizeof seconds, "%.1f", report.seconds);
  std::string text = "CPUs " + cpuListText(report.tested) + ": " +
                     std::to_string(report.fewestRuns) + " to " + std::to_string(report.mostRuns) +
                     " runs each in " + seconds + " s\n";
  if (report.messages > 0) text += count(report.messages, "message") + " exchanged between CPUs\n";
  return text + "Seed " + std::to_string(seed) + "\n";
}

std::string faultLine(const ProcessorFault& fault) {
  return "CPU " + cpuListText(fault.cpus) + ", " + fault.operation + ": expected " +
         hex(fault.mismatch.expected) + ", got " + hex(fault.mismatch.actual) + "\n";
}

void addFaults(const ProcessorReport& report, Outcome& outcome) {
  std::map<std::string, std::uint32_t> tallies;
  Note note;
  for (const ProcessorFault& fault : report.faults) {
    ++tallies["Processor error: CPU " + cpuListText(fault.cpus) + " " + fault.operation];
    note.text += faultLine(fault);
  }
  if (report.errors > report.faults.size())
    note.text += "and " + count(report.errors - report.faults.size(), "further error") + "\n";
  for (const auto& [code, number] : tallies) outcome.errors.push_back({code, number});
  note.errors = outcome.errors;
  outcome.text += note.text;
  outcome.notes.push_back(note);
}

std::vector<Measured> measured(const ProcessorReport& report) {
  std::vector<Measured> all{
      {"Duration", report.seconds, "s", false},
      {"TestedThreads", static_cast<double>(report.tested.size()), {}, true, Fold::Least},
      {"Operations", static_cast<double>(report.operations), {}, true, Fold::Most},
      {"Runs", static_cast<double>(report.fewestRuns)}};
  if (report.seconds > 0)
    all.push_back({"RunRate", static_cast<double>(report.fewestRuns) / report.seconds, "1/s", false,
                   Fold::Least});
  all.push_back({"Messages", static_cast<double>(report.messages)});
  all.push_back({"Errors", static_cast<double>(report.errors), {}, true, Fold::Sum, {}, 0});
  return all;
}

}  // namespace

std::string displayName(const std::string& model) {
  std::string name;
  for (const char letter : model) {
    const bool kept = static_cast<unsigned char>(letter) > ' ' && letter != ',' && letter != '|' &&
                      letter != '\x7F';
    if (kept) {
      name += letter;
    } else if (!name.empty() && name.back() != ' ') {
      name += ' ';
    }
  }
  if (!name.empty() && name.back() == ' ') name.pop_back();
  return name.empty() ? "Processor" : name;
}

Outcome processorOutcome(const ProcessorReport& report, const CpuPackage& package,
                         std::uint64_t seed) {
  Outcome outcome;
  outcome.summary = coverage(report, package);
  outcome.text = headline(report, package) + details(report, seed);
  outcome.measured = measured(report);
  if (!report.unusable.empty())
    outcome.text += "CPUs " + cpuListText(report.unusable) + " could not be used\n";
  if (report.errors > 0) {
    outcome.state = CompletionState::Failed;
    addFaults(report, outcome);
  } else if (report.stopped) {
    outcome.state = CompletionState::Stopped;
    outcome.text += "Stopped before the end\n";
  } else if (!report.unusable.empty() || report.tested.empty()) {
    outcome.state = CompletionState::Incomplete;
    outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, {}});
  }
  return outcome;
}

}  // namespace providers
