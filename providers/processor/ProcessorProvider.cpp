#include "providers/common/ProviderLibrary.h"
#include "providers/common/RunSources.h"
#include "providers/processor/CpuAffinity.h"
#include "providers/processor/ProcessorDiagnostic.h"

namespace providers {

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  constexpr double kTargetSeconds = 7;
  static ResultTap tap;
  ProcessorSurroundings surroundings{bindToCpu, steadySeconds, processorOperations(), &tap};
  std::vector<std::unique_ptr<Diagnostic>> diagnostics;
  diagnostics.push_back(std::make_unique<ProcessorDiagnostic>(
      queryCpuPackages, std::move(surroundings), randomSeed, kTargetSeconds));
  return diagnostics;
}

}  // namespace providers
