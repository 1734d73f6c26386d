#include "host/Diags.h"

#include <cstdio>
#include <iostream>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include "engine/installation/InstallationRoot.h"
#include "host/MemoryWatch.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/Process.h"
#include "host/options/Completion.h"
#include "host/options/Manual.h"
#include "host/verbs/KeptVerbs.h"
#include "host/verbs/Verbs.h"
#include "text/Words.h"

namespace host {
namespace {

engine::EngineOptions engineOptionsOf(const Options& options) {
  engine::EngineOptions engine;
  engine.installation.root = options.root;
  engine.installation.logFile = options.logFile;
  engine.installation.logLevel = options.logLevel;
  engine.installation.biosId = options.biosId;
  engine.installation.schemaCache = !options.noCache;
  engine.worker = engine::findWorker(executableDirectory());
  return engine;
}

ExitStatus carryOut(engine::Engine& engine, const Options& options) {
  switch (options.command) {
    case Command::kList:
      return listTests(engine, options);
    case Command::kRun:
      return runTests(engine, options);
    case Command::kResults:
      return showResults(engine, options);
    case Command::kInspect:
      return inspectClass(engine, options);
    case Command::kProviders:
      return listProviders(engine, options);
    case Command::kCheck:
      return checkInstallation(engine, options);
    default:
      break;
  }
  throw std::logic_error("a command without an operation");
}

/// The verbs that need no installation.
std::optional<ExitStatus> carryOutWithoutEngine(const Options& options) {
  switch (options.command) {
    case Command::kReport:
      return reportRun(options);
    case Command::kHistory:
      return showHistory(options);
    case Command::kVerify:
      return verifyStreams(options);
    case Command::kRecover:
      return recoverStreams(options);
    case Command::kFleet:
      return showFleet(options);
    case Command::kCompletion:
      std::cout << completionScript(options.shell);
      return ExitStatus::kPassed;
    case Command::kManual:
      std::cout << manualSections(commandVocabulary());
      return ExitStatus::kPassed;
    default:
      return std::nullopt;
  }
}

/// An answer that could not be written outweighs what was answered, but for faulty hardware and the
/// user's own end.
ExitStatus withOutput(ExitStatus status) {
  try {
    flushOutput();
  } catch (const std::runtime_error& error) {
    if (status != ExitStatus::kFailed && status != ExitStatus::kInterrupted) throw;
    reportError(error.what());
  }
  return status;
}

ExitStatus runCommand(Options options) {
  if (const auto status = carryOutWithoutEngine(options)) return withOutput(*status);
  options.root = engine::findInstallationRoot(
      {options.root, environmentVariable("DIAGS_ROOT"), executableDirectory()});
  engine::Engine engine(engineOptionsOf(options));
  return withOutput(carryOut(engine, options));
}

ExitStatus runArguments(const std::vector<std::string>& arguments) {
  try {
    auto parsed = parseOptions(arguments);
    if (const ExitStatus* const status = std::get_if<ExitStatus>(&parsed)) return *status;
    return runCommand(std::move(std::get<Options>(parsed)));
  } catch (const UsageError& error) {
    reportError(error.what());
    return ExitStatus::kUsage;
  } catch (const engine::InstallationError& error) {
    reportError(error.what());
    return ExitStatus::kUnusable;
  } catch (const engine::NothingToRun& error) {
    reportError(error.what());
    return ExitStatus::kNothingToRun;
  } catch (const engine::PlanError& error) {
    reportError(error.what());
    return ExitStatus::kUsage;
  } catch (const engine::EngineError& error) {
    reportError(error.what());
    const bool isStarved = error.kind() == engine::EngineError::Kind::kOutOfMemory;
    return isStarved ? ExitStatus::kCouldNotRun : ExitStatus::kUnusable;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    reportError(text::currentExceptionText());
    return ExitStatus::kCouldNotRun;
  }
}

}  // namespace

ExitStatus runDiags(const std::vector<std::string>& arguments) noexcept {
  watchMemory();
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
