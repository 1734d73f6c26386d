#include <cstddef>
#include <string>

#include "framework/ICIMNamespace.h"
#include "framework/TVORException.h"
#include "host/Commands.h"
#include "host/Output.h"
#include "host/TestNames.h"

namespace host {
namespace {

std::size_t printProblems(const std::vector<substitute::Problem>& problems) {
  for (const substitute::Problem& problem : problems) printLine(problem.toText());
  return problems.size();
}

/// The library's path and the reason, which may name that path as well: once is enough.
std::string faultOf(const substitute::ProviderInfo& provider) {
  const std::string path = provider.library + ": ";
  std::string reason = provider.reason;
  for (std::size_t at = reason.find(path); at != std::string::npos; at = reason.find(path)) {
    reason.erase(at, path.size());
  }
  return reason.find(provider.library) == std::string::npos ? path + reason : reason;
}

std::size_t printFaulty(const std::vector<substitute::ProviderInfo>& providers) {
  std::size_t count = 0;
  for (const substitute::ProviderInfo& provider : providers) {
    if (provider.reason.empty()) continue;
    printLine(faultOf(provider));
    ++count;
  }
  return count;
}

bool offersTests(NZELVOR20::ICIMNamespace& objects) {
  try {
    return objects.GetClass("CIM_AvailableDiagnosticService", {}) != nullptr;
  } catch (const NZELVOR20::TVORException&) {
    return false;
  }
}

std::size_t printTestNames(NZELVOR20::ICIMNamespace& objects) {
  if (!offersTests(objects)) return 0;
  const std::vector<std::string> lines = unnameableTests(objects);
  for (const std::string& line : lines) printLine(line);
  return lines.size();
}

/// A library that is faulty may be why nothing is listed: then it was named.
std::size_t checkTestNames(NZELVOR20::ICIMNamespace& objects, bool hasFaultyLibrary) {
  try {
    return printTestNames(objects);
  } catch (const NZELVOR20::TVORException& error) {
    if (hasFaultyLibrary) return 0;
    printLine(error.what());
    return 1;
  }
}

}  // namespace

ExitStatus checkInstallation(Session& session, const Options&) {
  const substitute::Framework& framework = session.framework();
  printProblems(framework.notes());
  std::size_t faults = printProblems(framework.problems());
  faults += printProblems(framework.checkDataFiles());
  faults += printProblems(framework.checkRights());
  const std::size_t libraries = printFaulty(framework.providers(true));
  faults += libraries + checkTestNames(*framework.objectManager(), libraries > 0);
  if (faults > 0) return ExitStatus::kCouldNotRun;
  printLine("No faults found in " + session.root());
  return ExitStatus::kPassed;
}

}  // namespace host
