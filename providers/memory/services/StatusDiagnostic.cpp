#include "providers/memory/services/StatusDiagnostic.h"

#include <algorithm>
#include <limits>

#include "providers/common/Findings.h"
#include "providers/common/TestFacts.h"
#include "providers/memory/services/RunFindings.h"

namespace providers::memory {

namespace {

DiagnosticDescription describe() {
  constexpr std::uint16_t kStatus = 13, kHealthCheck = 4;
  TestFacts facts;
  facts.family = "DIAGS_Memory";
  facts.name = "DIAGS: Memory Status";
  facts.elementName = "Memory Status Test";
  facts.text =
      "Asks the firmware which memory modules there are, and the memory controllers which errors "
      "they have counted.";
  facts.type = {{"MemoryTestType", kStatus, false}};
  facts.testTypes = {kHealthCheck};
  facts.settingsClass = "DIAGS_MemoryStatusTestSettings";
  facts.looks = true;
  return describeTest(facts);
}

std::string moduleLines(const ModuleTable& table) {
  std::string text;
  for (const MemoryModule& module : table.modules)
    text += "Memory module " + moduleName(module) + ": " + sizeText(module.bytes) +
            (module.manufacturer.empty() ? "" : ", " + module.manufacturer) + "\n";
  return text;
}

std::string counterLine(const ErrorCounter& counter) {
  return "Counted since the start of the machine: " + counter.name() + ", " +
         countText(counter.corrected, "corrected error") + ", " +
         countText(counter.uncorrected, "uncorrected error") + "\n";
}

void judge(const ErrorCounter& counter, Outcome& outcome) {
  if (!counter.corrected && !counter.uncorrected) return;
  Note note;
  note.text = counterLine(counter);
  if (counter.uncorrected) {
    outcome.state = CompletionState::Failed;
    note.errors.push_back({"Uncorrected memory error", clampCount(counter.uncorrected)});
    note.correctiveAction = "Replace memory module " + counter.name() + "\n";
  } else {
    if (outcome.state == CompletionState::Ok) outcome.state = CompletionState::Warning;
    note.errors.push_back({"Corrected memory error", clampCount(counter.corrected)});
    note.type = RecordType::Warnings;
    note.correctiveAction =
        "Watch memory module " + counter.name() + "; replace it if the count goes on rising\n";
  }
  note.text += "Corrective action: " + note.correctiveAction;
  note.part = {"Memory module " + counter.place, counter.label, {}};
  for (const ErrorTally& tally : note.errors) {
    const auto known = std::find_if(outcome.errors.begin(), outcome.errors.end(),
                                    [&](const ErrorTally& one) { return one.code == tally.code; });
    if (known == outcome.errors.end()) {
      outcome.errors.push_back(tally);
    } else {
      known->count +=
          std::min(tally.count, std::numeric_limits<std::uint32_t>::max() - known->count);
    }
  }
  outcome.text += note.text;
  outcome.notes.push_back(note);
}

Outcome nothingKnown() {
  Outcome outcome;
  outcome.state = CompletionState::Incomplete;
  outcome.summary = "Not tested: neither firmware nor controllers tell";
  outcome.text =
      "Not tested: the firmware's table (SMBIOS) cannot be read, or names no memory module, and no "
      "memory controller counts errors (EDAC); the administrator may see more\n";
  outcome.errors.push_back({"Nobody to ask", 1});
  outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, outcome.errors});
  return outcome;
}

}  // namespace

StatusDiagnostic::StatusDiagnostic(const Surroundings& surroundings)
    : m_surroundings(surroundings), m_description(describe()) {}

std::vector<Device> StatusDiagnostic::devices() const {
  if (!m_surroundings.hasFirmware() && m_surroundings.counters().empty()) return {};
  return memoryDevices(m_surroundings.extent().size);
}

Outcome StatusDiagnostic::run(const Device&, const RunSettings&, RunControl& control) {
  control.status("Asking for the modules");
  const ModuleTable table = moduleTable(m_surroundings.firmware());
  const std::vector<ErrorCounter> counters = m_surroundings.counters();
  if (table.modules.empty() && counters.empty()) return nothingKnown();
  Outcome outcome;
  std::uint64_t corrected = 0, uncorrected = 0;
  for (const ErrorCounter& counter : counters) {
    corrected += counter.corrected;
    uncorrected += counter.uncorrected;
  }
  const std::string modules = countText(table.modules.size(), "module");
  outcome.summary = counters.empty()
                        ? modules + ", errors not counted"
                        : modules + ", " + countText(corrected + uncorrected, "error") + " counted";
  outcome.text = outcome.summary + "\n" + moduleLines(table);
  for (const ErrorCounter& counter : counters) judge(counter, outcome);
  outcome.measured = {
      {"Modules", static_cast<double>(table.modules.size()), {}, true, Fold::Least}};
  if (!counters.empty()) {
    outcome.measured.push_back(
        {"CorrectedErrors", static_cast<double>(corrected), {}, true, Fold::Most, {}, 0});
    outcome.measured.push_back(
        {"UncorrectedErrors", static_cast<double>(uncorrected), {}, true, Fold::Most, {}, 0});
  }
  control.progress(1);
  return outcome;
}

}  // namespace providers::memory
