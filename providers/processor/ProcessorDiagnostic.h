#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/processor/CpuTopology.h"
#include "providers/processor/ProcessorEngine.h"

namespace providers {

/// Tests a processor package: every hardware thread of it that this process may use.
class ProcessorDiagnostic : public Diagnostic {
 public:
  using Packages = std::function<std::vector<CpuPackage>()>;

  /// `seed` makes one for runs whose settings have none.
  ProcessorDiagnostic(Packages packages, ProcessorSurroundings surroundings,
                      std::function<std::uint64_t()> seed, double targetSeconds);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override;
  std::string refuse(const RunSettings& settings) const override;
  double passSeconds(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  double targetSeconds(const RunSettings& settings) const;

  const Packages m_packages;
  const ProcessorSurroundings m_surroundings;
  const std::function<std::uint64_t()> m_seed;
  const double m_targetSeconds;
  const DiagnosticDescription m_description;
};

/// A model name that can stand in a list: without ',' and '|' and control characters, single
/// blanks; "Processor" for an empty one.
std::string displayName(const std::string& model);

/// What a run found, as a record has it.
Outcome processorOutcome(const ProcessorReport& report, const CpuPackage& package,
                         std::uint64_t seed);

}  // namespace providers
