#include "providers/processor/services/StatusDiagnostic.h"

#include <utility>

#include "providers/common/Step.h"
#include "providers/processor/services/FaultText.h"
#include "providers/processor/services/ProcessorDevices.h"

namespace providers {

StatusDiagnostic::StatusDiagnostic(const ProcessorMachine& machine, Reader read)
    : m_machine(machine),
      m_read(std::move(read)),
      m_description(
          describeService("Processor Status",
                          "Microcode, clock rates, throttling, machine checks, and threads "
                          "that are switched off.",
                          kStatusTest, 0)) {}

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
  std::uint64_t checks = 0, throttles = 0;
  for (const ThreadHealth& thread : health.threads) {
    checks += thread.machineChecks.value_or(0);
    throttles += thread.coreThrottles.value_or(0);
  }
  outcome.measured = {
      {"Threads", static_cast<double>(health.threads.size()), {}, true, Fold::Least},
      {"MachineChecks", static_cast<double>(checks), {}, true, Fold::Most, {}, 0},
      {"Throttles", static_cast<double>(throttles), {}, true, Fold::Most},
      {"ThreadsOff", static_cast<double>(health.off.size()), {}, true, Fold::Most}};
  return outcome;
}

}  // namespace providers
