#include <algorithm>

#include "providers/common/ProviderLibrary.h"
#include "providers/common/QuickCheck.h"
#include "providers/common/RunSources.h"
#include "providers/common/SharedReading.h"
#include "providers/memory/services/PatternDiagnostic.h"
#include "providers/memory/services/StatusDiagnostic.h"

namespace providers {

namespace {

/// Two inversions of random numbers: what finds most in the least time. Its record is found by its
/// device and explained by the messages of the "diag service" family, for which a warning is a
/// pass.
std::unique_ptr<Diagnostic> makeCheck(const memory::Surroundings& surroundings) {
  const auto& kinds = memory::testKinds();
  const auto random = std::find_if(kinds.begin(), kinds.end(), [](const memory::TestKind& kind) {
    return kind.type == memory::TestType::MovingInversionsRandom;
  });
  const QuickCheck::Name name{"ZEL:Memory Check:diag service", "Memory Check"};
  return std::make_unique<QuickCheck>(
      std::make_unique<memory::PatternDiagnostic>(*random, surroundings), name);
}

memory::Extent readExtent() {
  return {memory::queryMemorySize(), memory::usableProcessors().size()};
}

}  // namespace

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  memory::Surroundings surroundings;
  surroundings.lately = [] {
    static const auto& extent = *new SharedReading<memory::Extent>(readExtent, steadySeconds);
    return extent.get();
  };
  surroundings.clock = steadySeconds;
  surroundings.seed = randomSeed;
  std::vector<std::unique_ptr<Diagnostic>> diagnostics;
  for (const memory::TestKind& kind : memory::testKinds())
    diagnostics.push_back(std::make_unique<memory::PatternDiagnostic>(kind, surroundings));
  diagnostics.push_back(std::make_unique<memory::StatusDiagnostic>(surroundings));
  diagnostics.push_back(makeCheck(surroundings));
  return diagnostics;
}

}  // namespace providers
