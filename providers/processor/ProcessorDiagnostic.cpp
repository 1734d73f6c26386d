#include "providers/processor/ProcessorDiagnostic.h"

#include <algorithm>
#include <utility>

namespace providers {

namespace {

using Uint16s = std::vector<std::uint16_t>;

constexpr double kQuickShare = 0.2;
constexpr double kSecondsAround = 1;  // an operation that has begun goes on to its end

DiagnosticDescription describe(double targetSeconds) {
  constexpr std::uint16_t kMixedTest = 1;
  constexpr std::uint16_t kFunctional = 2, kStress = 3;
  DiagnosticDescription description;
  description.family = "DIAGS_Processor";
  description.name = "DIAGS: Processor Test";
  description.elementName = "Processor Test";
  description.text =
      "Lets every thread of a processor calculate and compares the results with known ones.";
  description.testProperties = {
      {"CPUTestType", kMixedTest, false},
      {"OtherCPUTestTypeDescription",
       std::string("Integer, floating-point and vector operations, caches, message exchange"),
       false},
      {"Characteristics", Uint16s{}, false},
      {"TestTypes", Uint16s{kFunctional, kStress}, false}};
  description.capabilities = {{"SupportedServiceModes", Uint16s{2, 3, 4, 5}, false},
                              {"SupportedLoopControl", Uint16s{2, 3, 4, 5}, false},
                              {"SupportedLogOptions", Uint16s{2, 7, 8}, false},
                              {"SupportedLogStorage", Uint16s{0x8000}, false},
                              {"SupportedExecutionControls", Uint16s{3, 5}, false},
                              {"Seed", true, false}};
  description.defaultSettings = {{"HaltOnError", false, false},
                                 {"QuickMode", false, false},
                                 {"PercentOfTestCoverage", std::uint8_t{100}, false},
                                 {"Seed", {}, false},
                                 {"NonDestructive", true, false}};
  description.estimatedSeconds = static_cast<std::uint32_t>(targetSeconds + kSecondsAround);
  return description;
}

std::string deviceId(const CpuPackage& package) { return "cpu" + std::to_string(package.number); }

Device makeDevice(const CpuPackage& package) {
  constexpr std::uint16_t kCpuEnabled = 1;
  Device device;
  device.id = deviceId(package);
  device.name = displayName(package.model);
  device.properties = {
      {"Role", std::string("Central Processor"), false},
      {"CPUStatus", kCpuEnabled, false},
      {"AddressWidth", static_cast<std::uint16_t>(8 * sizeof(void*)), false},
      {"NumberOfEnabledCores", static_cast<std::uint16_t>(package.cores), false},
      {"NumberOfEnabledThreads", static_cast<std::uint16_t>(package.online.size()), false},
      {"ThreadNumbers", Uint16s(package.online.begin(), package.online.end()), false}};
  if (package.megahertz > 0)
    device.properties.set("MaxClockSpeed", std::uint32_t{package.megahertz});
  return device;
}

Outcome notTested(const std::string& text) {
  Outcome outcome;
  outcome.state = CompletionState::Incomplete;
  outcome.summary = text;
  outcome.text = text + "\n";
  outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, {}});
  return outcome;
}

}  // namespace

ProcessorDiagnostic::ProcessorDiagnostic(Packages packages, ProcessorSurroundings surroundings,
                                         std::function<std::uint64_t()> seed, double targetSeconds)
    : m_packages(std::move(packages)),
      m_surroundings(std::move(surroundings)),
      m_seed(std::move(seed)),
      m_targetSeconds(targetSeconds),
      m_description(describe(targetSeconds)) {}

std::vector<Device> ProcessorDiagnostic::devices() const {
  std::vector<Device> devices;
  for (const CpuPackage& package : m_packages()) devices.push_back(makeDevice(package));
  return devices;
}

std::string ProcessorDiagnostic::refuse(const RunSettings& settings) const {
  const Value& seed = settings.properties.get("Seed");
  if (!isNull(seed) && !asNumber(seed)) return "Seed is no number";
  for (const char* name : {"CoreVoltages", "CPUSpeeds"})
    if (!isNull(settings.properties.get(name))) return std::string(name) + " is not supported";
  return {};
}

double ProcessorDiagnostic::targetSeconds(const RunSettings& settings) const {
  const double target = m_targetSeconds * (settings.quick ? kQuickShare : 1);
  return settings.loop.seconds ? std::min<double>(target, settings.loop.seconds) : target;
}

double ProcessorDiagnostic::passSeconds(const RunSettings& settings) const {
  return targetSeconds(settings) + kSecondsAround;
}

Outcome ProcessorDiagnostic::run(const Device& device, const RunSettings& settings,
                                 RunControl& control) {
  const std::vector<CpuPackage> packages = m_packages();
  const auto package = std::find_if(
      packages.begin(), packages.end(),
      [&device](const CpuPackage& candidate) { return deviceId(candidate) == device.id; });
  if (package == packages.end()) return notTested("Not tested: the processor is gone");
  if (package->cpus.empty())
    return notTested("Not tested: none of the processor's threads may be used");

  ProcessorPlan plan;
  plan.targetSeconds = targetSeconds(settings);
  plan.haltOnError = settings.haltOnError;
  plan.coveragePercent = settings.coveragePercent;
  const auto seed = asNumber(settings.properties.get("Seed"));
  plan.seed = seed ? *seed : m_seed();
  ProcessorEngine engine(m_surroundings);
  return processorOutcome(engine.run(package->cpus, plan, control), *package, plan.seed);
}

}  // namespace providers
