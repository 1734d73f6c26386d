#include "providers/common/ProviderLibrary.h"
#include "providers/common/RunSources.h"
#include "providers/memory/MemoryDiagnostic.h"

namespace providers {

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  static WriteBufferSettler settler;
  MemorySurroundings surroundings;
  surroundings.size = queryMemorySize;
  surroundings.clock = steadySeconds;
  surroundings.settler = &settler;
  surroundings.seed = randomSeed;
  std::vector<std::unique_ptr<Diagnostic>> diagnostics;
  diagnostics.push_back(std::make_unique<MemoryDiagnostic>(std::move(surroundings)));
  return diagnostics;
}

}  // namespace providers
