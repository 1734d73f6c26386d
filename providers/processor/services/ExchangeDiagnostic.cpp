#include "providers/processor/services/ExchangeDiagnostic.h"

#include <algorithm>
#include <iterator>

#include "providers/processor/engine/ExchangeEngine.h"
#include "providers/processor/services/ProcessorDevices.h"
#include "providers/processor/services/ReportText.h"

namespace providers {

namespace {

constexpr double kSeconds = 2;
constexpr double kQuickSeconds = 0.4;

DiagnosticDescription describe() {
  TestFacts facts = serviceFacts("Processor IPC",
                                 "Messages between all threads, through the caches, checked by the "
                                 "one that receives them.",
                                 kExchangeTest, kSeconds);
  facts.settings = {{"HaltOnError", false, false}, {"QuickMode", false, false}};
  facts.settingsClass = "DIAGS_ProcessorExchangeTestSettings";
  return describeTest(facts);
}

}  // namespace

ExchangeDiagnostic::ExchangeDiagnostic(const ProcessorMachine& machine, const MessageTap& tap)
    : m_machine(machine), m_tap(tap), m_description(describe()) {}

std::vector<Device> ExchangeDiagnostic::devices() const {
  const std::vector<Device> all = m_machine.devices();
  std::vector<Device> able;
  std::copy_if(all.begin(), all.end(), std::back_inserter(able), [](const Device& device) {
    const auto threads = asNumber(device.properties.get("NumberOfEnabledThreads"));
    return threads && *threads > 1;
  });
  return able;
}

double ExchangeDiagnostic::passSeconds(const RunSettings& settings) const {
  return settings.quick ? kQuickSeconds : kSeconds;
}

Outcome ExchangeDiagnostic::run(const Device& device, const RunSettings& settings,
                                RunControl& control) {
  const std::vector<CpuPackage> packages = m_machine.packages();
  const CpuPackage* const package = findPackage(packages, device);
  if (!package) return notTested("the processor is gone");
  if (package->cpus.size() < 2) return notTested("fewer than two threads may be used");
  ExchangePlan plan;
  plan.cpus = package->cpus;
  plan.targetSeconds = passSeconds(settings);
  plan.haltOnError = settings.haltOnError;
  const ProcessorSurroundings& surroundings = m_machine.surroundings;
  return exchangeOutcome(
      exchangeAll({surroundings.bind, surroundings.clock, &m_tap}, plan, control), *package);
}

}  // namespace providers
