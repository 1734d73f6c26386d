#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "engine/answers/Notes.h"
#include "engine/plan/DryRun.h"
#include "engine/plan/Estimate.h"
#include "history/HistoryError.h"
#include "history/Recorder.h"
#include "host/ExitStatus.h"
#include "host/Interrupts.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/display/Display.h"
#include "host/display/Terminal.h"
#include "host/display/Ticker.h"
#include "host/verbs/Circumstances.h"
#include "host/verbs/Outcomes.h"
#include "host/verbs/PlanOptions.h"
#include "host/verbs/ReportSinks.h"
#include "host/verbs/ResultsDisplay.h"
#include "host/verbs/State.h"
#include "host/verbs/Verbs.h"
#include "reports/redact/Redactor.h"
#include "text/Words.h"

namespace host {
namespace {

/// The core log traces each step of its own above it, which is nobody's but its makers'.
constexpr int kInformation = 2;

engine::Engine::RunOptions runOptionsOf(const Options& options, const engine::Inventory& found) {
  engine::Engine::RunOptions run;
  run.start.version = DIAGS_VERSION;
  run.start.commandLine = options.commandLine;
  run.start.host = found.identity.host;
  run.start.firmware = found.identity.firmware;
  run.start.parts = found.identity.parts;
  run.threadedMinutes = options.threadedMinutes;
  run.notes = engine::missingNotes(found.circumstances);
  if (options.isVerbose) run.logLevel = kInformation;
  return run;
}

/// Where every test was asked for, one that is missing must not pass unseen.
bool isComplete(const engine::Inventory& found, const Options& options) {
  if (!options.all || options.ignoreProviders || found.circumstances.unusable.empty()) return true;
  reportError(
      "tests may be missing for want of a provider; --ignore-providers makes that none of "
      "the exit status's affair");
  return false;
}

/// A provider that dawdles does so in the listing and in the run, and is named once; so is one that
/// was left out.
DisplayStyle styleOf(const Options& options, const engine::Inventory& found) {
  DisplayStyle style;
  for (const engine::Finding& one : found.circumstances.findings) style.told.push_back(one.text);
  for (const engine::Message& one : engine::missingNotes(found.circumstances)) {
    style.told.push_back(one.text);
  }
  adapt(style, surroundings());
  style.toVerdict = engine::secondsToVerdict;
  style.level = options.level.value_or(Level::kImmediate);
  if (options.isQuiet) style.detail = Detail::kQuiet;
  if (options.isVerbose) style.detail = Detail::kVerbose;
  return style;
}

/// The history of runs, while one is kept. That it cannot be is no reason not to run.
class Keeping {
 public:
  explicit Keeping(const Options& options) {
    if (options.noHistory) return;
    try {
      history::Options how;
      how.putsDamagedAside = true;
      m_history.emplace(openHistory(options, how));
      if (!m_history->notice().empty()) reportError(m_history->notice());
      m_recorder = std::make_unique<history::Recorder>(*m_history);
    } catch (const history::HistoryError& error) {
      reportError(std::string("the run is not kept: ") + error.what());
    }
  }

  bool isKept() const { return m_recorder != nullptr; }
  engine::EventSink* sink() { return m_recorder.get(); }

 private:
  std::optional<history::History> m_history;
  std::unique_ptr<history::Recorder> m_recorder;
};

/// Whether somebody learns of the run who does not read standard output.
bool isHeardElsewhere(const ReportFiles& files, const Keeping& keeping) {
  if (keeping.isKept()) return true;
  for (const std::string& file :
       {files.events, files.jsonLines, files.junit, files.html, files.metrics}) {
    if (!file.empty() && file != "-") return true;
  }
  return false;
}

/// Before its run has begun there is nothing to end in good order, and what waits for the reader of
/// a pipe may wait for ever: then this process ends.
void endUnlessBegun(const std::atomic<bool>& hasBegun) {
  constexpr int kLooks = 100;
  constexpr std::chrono::milliseconds kBetween(10);
  for (int i = 0; i < kLooks; ++i) {
    if (hasBegun) return;
    std::this_thread::sleep_for(kBetween);
  }
  std::_Exit(static_cast<int>(ExitStatus::kInterrupted));
}

engine::RunSummary runInto(engine::Engine& engine, const Options& options, const engine::Plan& plan,
                           const engine::Inventory& found, std::vector<engine::EventSink*> sinks) {
  // From here on nobody ends this process with a file begun.
  std::atomic<bool> hasBegun = false;
  const Interrupts interrupts([&engine, &hasBegun] {
    engine.cancel();
    endUnlessBegun(hasBegun);
  });
  ReportSinks files(options.files, options.redact);
  Keeping keeping(options);
  // What is shown has been kept, whenever this process ends.
  sinks.insert(sinks.begin(), &files);
  if (keeping.isKept()) sinks.insert(sinks.begin(), keeping.sink());
  if (isHeardElsewhere(options.files, keeping)) outliveReaders();
  hasBegun = true;
  engine::RunSummary summary = engine.run(plan, found.tests, runOptionsOf(options, found), sinks);
  for (std::string& failure : files.finish()) summary.sinkFailures.push_back(std::move(failure));
  return summary;
}

engine::RunSummary runOnDisplay(engine::Engine& engine, const Options& options,
                                const engine::Plan& plan, const engine::Inventory& found) {
  const ReportFiles& files = options.files;
  const bool isTaken = files.events == "-" || files.jsonLines == "-" || files.junit == "-" ||
                       files.html == "-" || files.metrics == "-";
  Display display(isTaken ? std::cerr : std::cout, std::cerr, styleOf(options, found));
  const Ticker ticker([&display] { display.tick(); });
  reports::Redactor redacted(display);
  engine::EventSink& shown = options.redact ? static_cast<engine::EventSink&>(redacted) : display;
  return runInto(engine, options, plan, found, {&shown});
}

ExitStatus conclude(const engine::RunSummary& summary, const engine::Inventory& found,
                    const Options& options) {
  for (const std::string& failure : summary.sinkFailures) {
    // What flushes it at the end says so, too.
    if (std::cout || failure != kNoOutput) reportError(failure);
  }
  const bool isWhole = isComplete(found, options) && summary.sinkFailures.empty();
  return statusOf(summary, isWhole);
}

engine::Inventory findTests(engine::Engine& engine) {
  engine::Inventory found = engine.list(engine::Detail::kFacts);
  reportWarnings(found.circumstances);
  reportUnusable(found.circumstances);
  return found;
}

}  // namespace

ExitStatus runTests(engine::Engine& engine, const Options& options) {
  const engine::Plan plan = planOf(options);
  const engine::Inventory found = findTests(engine);
  const bool asksForAny = options.tests.empty();
  if (asksForAny && found.tests.empty()) {
    reportError(std::string(text::trimmed(found.listing)));
    return isComplete(found, options) ? ExitStatus::kNothingToRun : ExitStatus::kCouldNotRun;
  }
  if (options.run.dryRun) {
    std::cout << engine::dryRun(plan, found.tests);
    return ExitStatus::kPassed;
  }
  return conclude(runOnDisplay(engine, options, plan, found), found, options);
}

ExitStatus showResults(engine::Engine& engine, const Options& options) {
  std::vector<Level> levels{Level::kSimple, Level::kImmediate, Level::kExtended};
  if (options.level) levels = {*options.level};
  ResultsDisplay display(levels);
  const engine::Inventory found = findTests(engine);
  return conclude(runInto(engine, options, planOf(options), found, {&display}), found, options);
}

}  // namespace host
