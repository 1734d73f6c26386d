#include "providers/processor/services/StatusDiagnostic.h"

#include <optional>
#include <utility>
#include <vector>

#include "providers/common/Findings.h"
#include "providers/common/Step.h"
#include "providers/processor/services/ProcessorDevices.h"

namespace providers {

namespace {

/// Of all threads; without a value where none of them tells.
std::optional<std::uint64_t> sumOf(const Health& health,
                                   std::optional<std::uint64_t> ThreadHealth::*count) {
  std::optional<std::uint64_t> sum;
  for (const ThreadHealth& thread : health.threads)
    if (thread.*count) sum = sum.value_or(0) + *(thread.*count);
  return sum;
}

/// What is not told is not measured: none is not zero.
std::vector<Measured> measured(const Health& health) {
  std::vector<Measured> list{
      {"Threads", static_cast<double>(health.threads.size()), {}, true, Fold::Least}};
  if (const auto checks = sumOf(health, &ThreadHealth::machineChecks))
    list.push_back({"MachineChecks", static_cast<double>(*checks), {}, true, Fold::Most, {}, 0});
  if (const auto throttles = sumOf(health, &ThreadHealth::coreThrottles))
    list.push_back({"Throttles", static_cast<double>(*throttles), {}, true, Fold::Most});
  list.push_back({"ThreadsOff", static_cast<double>(health.off.size()), {}, true, Fold::Most});
  return list;
}

DiagnosticDescription describe() {
  TestFacts facts = serviceFacts(
      "Processor Status",
      "Microcode, clock rates, throttling, machine checks, and threads that are switched off.",
      kStatusTest, 0);
  facts.settingsClass = "DIAGS_ProcessorStatusTestSettings";
  facts.looks = true;
  return describeTest(facts);
}

}  // namespace

StatusDiagnostic::StatusDiagnostic(const ProcessorMachine& machine, Reader read)
    : m_machine(machine), m_read(std::move(read)), m_description(describe()) {}

Outcome StatusDiagnostic::run(const Device& device, const RunSettings&, RunControl& control) {
  const std::vector<CpuPackage> packages = m_machine.packages();
  const CpuPackage* const package = findPackage(packages, device);
  if (!package) return notTested("the processor is gone");
  const Health health = m_read(package->online);
  control.progress(1);
  if (!isKnown(health)) return notTested("the system tells nothing of it");
  const std::vector<Concern> found = concerns(health);
  Outcome outcome;
  outcome.summary = "Read " + countText(package->online.size(), "thread") + ", " +
                    countText(found.size(), "concern");
  outcome.text = outcome.summary + "\n";
  for (const Concern& concern : found) {
    outcome.state = CompletionState::Warning;
    outcome.text += concern.line() + "\n";
    outcome.notes.push_back(
        {RecordType::Warnings, concern.line() + "\n", {}, step(concern.whatToDo)});
  }
  outcome.text += healthText(health);
  outcome.measured = measured(health);
  return outcome;
}

}  // namespace providers
