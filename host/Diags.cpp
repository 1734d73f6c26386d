#include "host/Diags.h"

#include <cstdio>
#include <iostream>
#include <new>
#include <stdexcept>

#include "host/Commands.h"
#include "host/InstallationRoot.h"
#include "host/MemoryWatch.h"
#include "host/Messages.h"
#include "host/Output.h"
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

/// So may a data file that cannot be read, or not to its end.
void mentionDataFiles(const Session& session) {
  std::string named;
  for (const substitute::Problem& problem : session.framework().checkDataFiles()) {
    if (!problem.isCut || problem.file == named) continue;
    reportError(problem.toText());
    named = problem.file;
  }
}

/// Whoever can change the installation decides what root is told.
void warnRoot(const Session& session, const Options& options) {
  if (options.command == Command::kCheck) return;
  for (const std::string& line : session.framework().warningsForRoot()) reportError(line);
}

ExitStatus runCommand(const Options& options) {
  Session session(installationOf(options));
  const bool looksForFaults =
      options.command == Command::kCheck || options.command == Command::kProviders;
  warnRoot(session, options);
  mentionProblems(session, options);
  if (options.command != Command::kCheck) mentionDataFiles(session);
  const ExitStatus status = carryOut(session, options);
  if (!looksForFaults) session.providers().report();
  flushOutput();
  return status;
}

ExitStatus runArguments(const std::vector<std::string>& arguments) {
  try {
    const auto parsed = parseOptions(arguments);
    if (const ExitStatus* const status = std::get_if<ExitStatus>(&parsed)) return *status;
    return runCommand(std::get<Options>(parsed));
  } catch (const UsageError& error) {
    reportError(error.what());
    return ExitStatus::kUsage;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    reportError(currentExceptionText());
    return ExitStatus::kCouldNotRun;
  }
}

}  // namespace

ExitStatus runDiags(const std::vector<std::string>& arguments) noexcept {
  try {
    return runArguments(arguments);
  } catch (...) {
    // There may be no memory for a message.
    std::cout.flush();
    std::fputs("diags: out of memory\n", stderr);
    return ExitStatus::kCouldNotRun;
  }
}

}  // namespace host
