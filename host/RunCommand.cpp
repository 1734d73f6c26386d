#include "host/Commands.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/TestRun.h"
#include "host/ThreadedRun.h"

namespace host {
namespace {

void printVerdict(TestRun& run, Level level) {
  if (level == Level::kExtended) {
    printLine("Verdict: " + run.text(Level::kImmediate));
    printApart(run.text(Level::kExtended));
  } else {
    printLine("Verdict: " + run.text(level) + run.remark());
  }
}

/// Runs one test and prints its verdict; an error of this test costs no other one.
Verdict runTest(Session& session, const std::string& identifier, Level level) {
  printLine("Test: " + identifier);
  flushOutput();
  TestRun run(session, identifier);
  run.execute();
  try {
    printVerdict(run, level);
  } catch (...) {
    reportError(identifier + ": its results cannot be read: " + currentExceptionText());
    return Verdict::kNoRecord;
  }
  flushOutput();
  if (!run.error().empty()) reportError(identifier + ": " + run.error());
  return run.verdict();
}

/// Where every test was asked for, one that is missing must not pass unseen.
void countProviders(Session& session, const Options& options, Tally& tally) {
  session.providers().report();
  if (options.ignoreProviders || !session.providers().hasUnusable()) return;
  reportError(
      "tests may be missing for want of a provider; --ignore-providers makes that none of "
      "the exit status's affair");
  tally.addUnusableProvider();
}

}  // namespace

ExitStatus runTests(Session& session, const Options& options) {
  const TestCatalogue catalogue = session.catalogue();
  Tally tally;
  if (options.all && catalogue.isEmpty()) {
    reportError(trimmed(session.listing()));
    countProviders(session, options, tally);
    return tally.status();
  }
  const std::vector<std::string> tests =
      options.all ? catalogue.identifiers() : catalogue.resolveAll(options.tests);
  for (const std::string& test : tests) {
    const Verdict verdict = runTest(session, test, options.level.value_or(Level::kImmediate));
    tally.add(verdict);
    if (options.threadedMinutes && verdict != Verdict::kNoRecord) {
      runAgainOnThread(session, *options.threadedMinutes);
    }
  }
  if (tests.size() > 1) printLine(tally.summary());
  if (options.all) countProviders(session, options, tally);
  return tally.status();
}

}  // namespace host
