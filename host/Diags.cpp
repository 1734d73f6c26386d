#include "host/Diags.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>

#include "host/Commands.h"
#include "host/InstallationRoot.h"
#include "host/Messages.h"
#include "host/Process.h"

namespace host {
namespace {

substitute::Installation installationOf(const Options& options) {
  substitute::Installation installation;
  installation.root = findInstallationRoot(
      {options.root, environmentVariable("DIAGS_ROOT"), executableDirectory()});
  installation.logFile = options.logFile;
  installation.logLevel = options.logLevel;
  installation.overrideBiosId = options.biosId.has_value();
  installation.biosId = options.biosId.value_or(std::string());
  installation.schemaCache = !options.noCache;
  return installation;
}

ExitStatus carryOut(Session& session, const Options& options) {
  switch (options.command) {
    case Command::kList:
      return listTests(session, options);
    case Command::kRun:
      return runTests(session, options);
    case Command::kResults:
      return showResults(session, options);
    case Command::kInspect:
      return inspectClass(session, options);
    case Command::kProviders:
      return listProviders(session, options);
    case Command::kCheck:
      return checkInstallation(session, options);
  }
  throw std::logic_error("a command without an operation");
}

/// A fault of the installation may be why a test is missing: the commands that work with tests
/// point at it.
void mentionProblems(const Session& session, const Options& options) {
  const std::size_t count = session.framework().problems().size();
  const bool namesThem = options.command == Command::kCheck;
  if (count == 0 || namesThem) return;
  reportError("the installation has " + std::to_string(count) +
              (count == 1 ? " fault" : " faults") + "; diags check names " +
              (count == 1 ? "it" : "them"));
}

/// So may a provider that is not to be loaded. None is loaded to find out.
void mentionRefusals(const Session& session, const Options& options) {
  const bool namesThem =
      options.command == Command::kCheck || options.command == Command::kProviders;
  if (namesThem) return;
  const std::vector<substitute::ProviderInfo> providers = session.framework().providers(false);
  const auto count =
      std::count_if(providers.begin(), providers.end(), [](const substitute::ProviderInfo& one) {
        return one.state == substitute::ProviderState::kRefused;
      });
  if (count == 0) return;
  reportError(std::to_string(count) +
              (count == 1 ? " provider was refused" : " providers were refused") +
              "; diags providers says why");
}

/// Whoever can change the installation decides what root is told.
void warnRoot(const Session& session, const Options& options) {
  if (options.command == Command::kCheck) return;
  for (const std::string& line : session.framework().warningsForRoot()) reportError(line);
}

ExitStatus runCommand(const Options& options) {
  Session session(installationOf(options));
  warnRoot(session, options);
  mentionProblems(session, options);
  mentionRefusals(session, options);
  const ExitStatus status = carryOut(session, options);
  std::cout.flush();
  if (!std::cout) throw std::runtime_error("standard output cannot be written");
  return status;
}

}  // namespace

ExitStatus runDiags(const std::vector<std::string>& arguments) noexcept {
  try {
    const auto parsed = parseOptions(arguments);
    if (const ExitStatus* const status = std::get_if<ExitStatus>(&parsed)) return *status;
    return runCommand(std::get<Options>(parsed));
  } catch (const UsageError& error) {
    reportError(error.what());
    return ExitStatus::kUsage;
  } catch (...) {
    reportError(currentExceptionText());
    return ExitStatus::kCouldNotRun;
  }
}

}  // namespace host
