#pragma once

#include <functional>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/processor/engine/ProcessorEngine.h"
#include "providers/processor/kernels/Kernels.h"
#include "providers/processor/services/ServiceTable.h"

namespace providers {

/// What the services ask of the machine; a test has its own. What takes time is asked when a test
/// runs.
struct ProcessorMachine {
  std::function<std::vector<Device>()> devices;
  std::function<std::vector<CpuPackage>()> packages;
  std::function<std::vector<CpuCache>(unsigned cpu)> caches;
  std::function<Kernels()> kernels;
  std::function<std::uint64_t()> seed;  ///< for runs whose settings have none
  ProcessorSurroundings surroundings;
};

/// Lets every hardware thread of a package that this process may use calculate.
class CalculationDiagnostic : public Diagnostic {
 public:
  /// The machine outlives the diagnostic.
  CalculationDiagnostic(const CalculationService& service, const ProcessorMachine& machine);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override { return m_machine.devices(); }
  std::string refuse(const RunSettings& settings) const override;
  double passSeconds(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  bool has(Unit unit) const;
  double targetSeconds(const RunSettings& settings) const;
  Operations operations(const CpuPackage& package, const Kernels& kernels) const;

  const CalculationService& m_service;
  const ProcessorMachine& m_machine;
  const DiagnosticDescription m_description;
};

/// The operations that are a share of all, in percent: spread evenly, and never without any.
Operations chooseShare(const Operations& all, unsigned percent);

/// An operation for each size of cache: the first ones filled, of one that is shared a thread's
/// part. The caches are those of all threads: on a processor of two kinds of cores they differ, and
/// each thread does what fills its own.
Operations cacheOperations(const std::vector<CpuCache>& caches);

}  // namespace providers
