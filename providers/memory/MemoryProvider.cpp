#include "providers/common/ProviderLibrary.h"
#include "providers/common/RunSources.h"
#include "providers/memory/services/PatternDiagnostic.h"
#include "providers/memory/services/StatusDiagnostic.h"

namespace providers {

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  memory::Surroundings surroundings;
  surroundings.clock = steadySeconds;
  surroundings.seed = randomSeed;
  std::vector<std::unique_ptr<Diagnostic>> diagnostics;
  for (const memory::TestKind& kind : memory::testKinds())
    diagnostics.push_back(std::make_unique<memory::PatternDiagnostic>(kind, surroundings));
  diagnostics.push_back(std::make_unique<memory::StatusDiagnostic>(surroundings));
  return diagnostics;
}

}  // namespace providers
