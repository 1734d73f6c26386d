#include <vector>

#include "host/Interrupts.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/verbs/Circumstances.h"
#include "host/verbs/Outcomes.h"
#include "host/verbs/RunDisplay.h"
#include "host/verbs/Verbs.h"

namespace host {
namespace {

engine::PlannedTest planned(const std::string& name) {
  engine::PlannedTest test;
  test.tests.name = name;
  return test;
}

/// The command line as a plan.
engine::Plan planOf(const Options& options) {
  engine::Plan plan;
  engine::Group group;
  if (options.all) group.tests.push_back(planned("*"));
  for (const std::string& name : options.tests) group.tests.push_back(planned(name));
  plan.groups.push_back(std::move(group));
  return plan;
}

engine::Engine::RunOptions runOptionsOf(const Options& options, const engine::Inventory& found) {
  engine::Engine::RunOptions run;
  run.start.version = DIAGS_VERSION;
  run.start.commandLine = options.commandLine;
  run.start.host = found.identity.host;
  run.start.firmware = found.identity.firmware;
  run.start.parts = found.identity.parts;
  run.threadedMinutes = options.threadedMinutes;
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

ExitStatus runFound(engine::Engine& engine, const Options& options, const engine::Inventory& found,
                    RunDisplay& display) {
  const Interrupts interrupts([&engine] { engine.cancel(); });
  const engine::RunSummary summary =
      engine.run(planOf(options), found.tests, runOptionsOf(options, found), {&display});
  for (const std::string& failure : summary.sinkFailures) reportError(failure);
  if (countOf(summary) > 1) printLine(summaryOf(summary));
  const bool isWhole = isComplete(found, options) && summary.sinkFailures.empty();
  return statusOf(summary, isWhole);
}

ExitStatus runAndShow(engine::Engine& engine, const Options& options, RunDisplay& display) {
  const engine::Inventory found = engine.list(engine::Detail::kFacts);
  reportWarnings(found.circumstances);
  reportUnusable(found.circumstances);
  if (!options.all || !found.tests.empty()) return runFound(engine, options, found, display);
  reportError(trimmed(found.listing));
  return isComplete(found, options) ? ExitStatus::kNothingToRun : ExitStatus::kCouldNotRun;
}

}  // namespace

ExitStatus runTests(engine::Engine& engine, const Options& options) {
  RunDisplay display(options.level.value_or(Level::kImmediate));
  return runAndShow(engine, options, display);
}

ExitStatus showResults(engine::Engine& engine, const Options& options) {
  std::vector<Level> levels{Level::kSimple, Level::kImmediate, Level::kExtended};
  if (options.level) levels = {*options.level};
  RunDisplay display(levels);
  return runAndShow(engine, options, display);
}

}  // namespace host
