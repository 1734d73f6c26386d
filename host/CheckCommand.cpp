#include <cstddef>
#include <iostream>

#include "host/Commands.h"

namespace host {
namespace {

std::size_t printProblems(const std::vector<substitute::Problem>& problems) {
  for (const substitute::Problem& problem : problems) std::cout << problem.toText() << '\n';
  return problems.size();
}

std::size_t printFaulty(const std::vector<substitute::ProviderInfo>& providers) {
  std::size_t count = 0;
  for (const substitute::ProviderInfo& provider : providers) {
    if (provider.reason.empty()) continue;
    std::cout << provider.library << ": " << provider.reason << '\n';
    ++count;
  }
  return count;
}

}  // namespace

ExitStatus checkInstallation(Session& session, const Options&) {
  const substitute::Framework& framework = session.framework();
  const std::size_t faults =
      printProblems(framework.problems()) + printProblems(framework.checkDataFiles()) +
      printProblems(framework.checkRights()) + printFaulty(framework.providers(true));
  if (faults > 0) return ExitStatus::kCouldNotRun;
  std::cout << "No faults found in " << session.root() << '\n';
  return ExitStatus::kPassed;
}

}  // namespace host
