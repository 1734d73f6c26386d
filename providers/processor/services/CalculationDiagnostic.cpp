#include "providers/processor/services/CalculationDiagnostic.h"

#include <algorithm>
#include <set>
#include <utility>

#include "providers/processor/operations/CacheOperations.h"
#include "providers/processor/operations/OperationTable.h"
#include "providers/processor/services/ProcessorDevices.h"
#include "providers/processor/services/ReportText.h"

namespace providers {

namespace {

constexpr double kQuickShare = 0.2;
constexpr double kSecondsAround = 1;  // an operation that has begun goes on to its end
constexpr std::uint64_t kMostCacheBytes = std::uint64_t{16} << 20;  // of a thread's part

DiagnosticDescription describe(const CalculationService& service) {
  TestFacts facts = serviceFacts(service.name, service.text, service.type, service.seconds);
  facts.settings = {{"HaltOnError", false, false},
                    {"QuickMode", false, false},
                    {"PercentOfTestCoverage", std::uint8_t{100}, false},
                    {"Seed", {}, false}};
  facts.capabilities = {{"Seed", true, false}};
  return describeTest(facts);
}

const char* cacheName(unsigned level) {
  switch (level) {
    case 1:
      return "First-level cache";
    case 2:
      return "Second-level cache";
    case 3:
      return "Third-level cache";
    default:
      return "Fourth-level cache";
  }
}

}  // namespace

CalculationDiagnostic::CalculationDiagnostic(const CalculationService& service,
                                             const ProcessorMachine& machine)
    : m_service(service), m_machine(machine), m_description(describe(service)) {}

std::string CalculationDiagnostic::refuse(const RunSettings& settings) const {
  const Value& seed = settings.properties.get("Seed");
  if (!isNull(seed) && !asNumber(seed)) return "Seed is no number";
  for (const char* name : {"CoreVoltages", "CPUSpeeds"})
    if (!isNull(settings.properties.get(name))) return std::string(name) + " is not supported";
  return {};
}

double CalculationDiagnostic::targetSeconds(const RunSettings& settings) const {
  const double target = m_service.seconds * (settings.quick ? kQuickShare : 1);
  return settings.loop.seconds ? std::min<double>(target, settings.loop.seconds) : target;
}

double CalculationDiagnostic::passSeconds(const RunSettings& settings) const {
  return targetSeconds(settings) + kSecondsAround;
}

bool CalculationDiagnostic::has(Unit unit) const {
  return std::find(m_service.units.begin(), m_service.units.end(), unit) != m_service.units.end();
}

Operations CalculationDiagnostic::operations(const CpuPackage& package,
                                             const Kernels& kernels) const {
  Operations all;
  std::copy_if(processorOperations().begin(), processorOperations().end(), std::back_inserter(all),
               [this](const Operation& operation) { return has(operation.unit); });
  if (has(Unit::Cache)) {
    std::vector<CpuCache> caches;
    for (const unsigned cpu : package.cpus)
      for (const CpuCache& cache : m_machine.caches(cpu)) caches.push_back(cache);
    const Operations operations = cacheOperations(caches);
    all.insert(all.end(), operations.begin(), operations.end());
  }
  all.insert(all.end(), kernels.operations.begin(), kernels.operations.end());
  return all;
}

Outcome CalculationDiagnostic::run(const Device& device, const RunSettings& settings,
                                   RunControl& control) {
  const std::vector<CpuPackage> packages = m_machine.packages();
  const CpuPackage* const package = findPackage(packages, device);
  if (!package) return notTested("the processor is gone");
  if (package->cpus.empty()) return notTested("none of the processor's threads may be used");

  const Kernels kernels = has(Unit::Kernel) ? m_machine.kernels() : Kernels();
  ProcessorPlan plan;
  plan.operations = chooseShare(operations(*package, kernels), settings.coveragePercent);
  plan.cpus = package->cpus;
  plan.places = usablePlaces(packages);
  plan.targetSeconds = targetSeconds(settings);
  plan.haltOnError = settings.haltOnError;
  const auto seed = asNumber(settings.properties.get("Seed"));
  plan.seed = seed ? *seed : m_machine.seed();
  const ProcessorReport report = ProcessorEngine(m_machine.surroundings).run(plan, control);
  return calculationOutcome(report, *package, plan.seed, kernels);
}

Operations chooseShare(const Operations& all, unsigned percent) {
  Operations chosen;
  for (std::size_t i = 0; i < all.size(); ++i)
    if (i == 0 || (i + 1) * percent / 100 > i * percent / 100) chosen.push_back(all[i]);
  return chosen;
}

Operations cacheOperations(const std::vector<CpuCache>& caches) {
  // Where the system does not tell, what most processors have at least.
  static const std::vector<CpuCache> usual{{1, 32768, 1}, {2, 262144, 1}, {3, 2097152, 1}};
  std::set<std::pair<unsigned, std::uint64_t>> parts;
  for (const CpuCache& cache : caches.empty() ? usual : caches)
    parts.emplace(cache.level, std::min(cache.bytes / cache.threads, kMostCacheBytes));
  Operations operations;
  for (const auto& [level, bytes] : parts)
    operations.push_back(cacheOperation(cacheName(level), bytes));
  return operations;
}

}  // namespace providers
