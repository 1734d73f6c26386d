#include "providers/processor/services/ReportText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/processor/services/FaultText.h"
#include "providers/processor/services/ProcessorDevices.h"

namespace providers {

namespace {

std::string fixedText(double value, int digits) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

template <class Report>
std::string coverage(const Report& report, const CpuPackage& package) {
  return "Tested " + std::to_string(report.tested.size()) + " of " +
         countText(package.online.size(), "thread");
}

void addUnstarted(const ProcessorReport& report, Outcome& outcome) {
  outcome.text += "For " + std::to_string(report.unstarted) +
                  " of them the system started no thread: it allows no more\n";
}

void addUnstarted(const ExchangeReport& report, Outcome& outcome) {
  outcome.text += countText(report.unstarted, "pair") +
                  " exchanged nothing: the system started no more threads\n";
}

/// What ends a run that found no fault. `refused` are parts of the test that could not be used.
template <class Report>
void judgeCoverage(const Report& report, const CpuPackage& package,
                   const std::vector<std::string>& refused, Outcome& outcome) {
  if (!report.unusable.empty())
    outcome.text += "CPUs " + cpuListText(report.unusable) + " could not be used\n";
  if (report.unstarted > 0) addUnstarted(report, outcome);
  for (const std::string& line : refused) outcome.text += "Not tested: " + line + "\n";
  if (report.errors > 0) {
    outcome.state = CompletionState::Failed;
  } else if (report.stopped) {
    outcome.state = CompletionState::Stopped;
    outcome.text += "Stopped before the end\n";
  } else if (!report.unusable.empty() || report.unstarted > 0 || report.tested.empty()) {
    outcome.state = CompletionState::Incomplete;
  } else if (report.tested.size() < package.online.size()) {
    outcome.state = CompletionState::Incomplete;  // no word against the processor
    outcome.text += "This process may not use the other threads\n";
  } else if (!refused.empty()) {
    outcome.state = CompletionState::Incomplete;
    outcome.correctiveAction =
        "Install the package again, into folders that its users cannot write\n";
  }
  if (outcome.state == CompletionState::Incomplete)
    outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, {}});
}

void addNote(Note note, Outcome& outcome) {
  outcome.errors.insert(outcome.errors.end(), note.errors.begin(), note.errors.end());
  outcome.text += note.text;
  outcome.notes.push_back(std::move(note));
}

std::uint32_t tally(std::uint64_t count) {
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(count, 0xFFFFFFFF));
}

std::vector<Measured> measured(const ProcessorReport& report) {
  std::vector<Measured> all{
      {"Duration", report.seconds, "s", false},
      {"TestedThreads", static_cast<double>(report.tested.size()), {}, true, Fold::Least},
      {"Operations", static_cast<double>(report.operations), {}, true, Fold::Most},
      {"Blocks", static_cast<double>(report.fewestBlocks)},
      {"Busy", 100 * report.busy, "%", false, Fold::Least}};
  if (report.seconds > 0)
    all.push_back({"BlockRate", static_cast<double>(report.fewestBlocks) / report.seconds, "1/s",
                   false, Fold::Least});
  all.push_back({"Errors", static_cast<double>(report.errors), {}, true, Fold::Sum, {}, 0});
  return all;
}

}  // namespace

Outcome calculationOutcome(const ProcessorReport& report, const CpuPackage& package,
                           std::uint64_t seed, const Kernels& kernels) {
  Outcome outcome;
  outcome.summary = coverage(report, package);
  outcome.text = outcome.summary + " of " + displayName(package.model) + ", " +
                 countText(report.operations, "operation") + ", " +
                 countText(report.errors, "error") + "\nCPUs " + cpuListText(report.tested) + ": " +
                 std::to_string(report.fewestBlocks) + " to " + std::to_string(report.mostBlocks) +
                 " blocks of results each in " + fixedText(report.seconds, 1) + " s, at least " +
                 fixedText(100 * report.busy, 0) + " % busy\nSeed " + std::to_string(seed) + "\n";
  for (const std::string& line : kernels.missing) outcome.text += "Without " + line + "\n";
  outcome.measured = measured(report);
  for (const CalculationFault& finding : report.findings)
    addNote({RecordType::DeviceErrors,
             faultText(finding),
             {{"Processor error: " + partText(finding) + ", " + finding.suspicion.operation.name,
               tally(finding.count)}},
             correctiveAction(finding) + "\n",
             {partText(finding), {}, {}}},
            outcome);
  judgeCoverage(report, package, kernels.refused, outcome);
  return outcome;
}

Outcome exchangeOutcome(const ExchangeReport& report, const CpuPackage& package) {
  Outcome outcome;
  outcome.summary = coverage(report, package);
  outcome.text = outcome.summary + " of " + displayName(package.model) + ", " +
                 countText(report.pairs, "pair") + ", " + countText(report.errors, "error") + "\n" +
                 countText(report.messages, "message") + " exchanged in " +
                 fixedText(report.seconds, 1) + " s\n";
  outcome.measured = {
      {"Duration", report.seconds, "s", false},
      {"TestedThreads", static_cast<double>(report.tested.size()), {}, true, Fold::Least},
      {"Pairs", static_cast<double>(report.pairs)},
      {"Messages", static_cast<double>(report.messages)},
      {"Errors", static_cast<double>(report.errors), {}, true, Fold::Sum, {}, 0}};
  for (const ExchangeFault& fault : report.faults)
    addNote({RecordType::DeviceErrors,
             faultText(fault),
             {{"Processor error: messages between CPU " + std::to_string(fault.cpu1) + " and CPU " +
                   std::to_string(fault.cpu2),
               1}},
             correctiveAction(fault) + "\n"},
            outcome);
  judgeCoverage(report, package, {}, outcome);
  return outcome;
}

}  // namespace providers
