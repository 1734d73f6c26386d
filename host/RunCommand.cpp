#include <iostream>

#include "host/Commands.h"
#include "host/Messages.h"
#include "host/TestRun.h"
#include "host/ThreadedRun.h"

namespace host {
namespace {

void printVerdict(TestRun& run, Level level) {
  if (level == Level::kExtended) {
    std::cout << "Verdict: " << run.text(Level::kImmediate) << '\n';
    std::cout << run.text(Level::kExtended) << '\n';
  } else {
    std::cout << "Verdict: " << run.text(level) << run.remark() << '\n';
  }
  std::cout.flush();
}

/// Runs one test and prints its verdict; an error of this test costs no other one.
Verdict runTest(Session& session, const std::string& identifier, Level level) {
  std::cout << "Test: " << identifier << std::endl;
  TestRun run(session, identifier);
  run.execute();
  try {
    printVerdict(run, level);
  } catch (...) {
    reportError(identifier + ": its results cannot be read: " + currentExceptionText());
    return Verdict::kNoRecord;
  }
  if (!run.error().empty()) reportError(identifier + ": " + run.error());
  return run.verdict();
}

}  // namespace

ExitStatus runTests(Session& session, const Options& options) {
  const TestCatalogue catalogue = session.catalogue();
  if (options.all && catalogue.isEmpty()) {
    reportError(trimmed(session.listing()));
    return ExitStatus::kNothingToRun;
  }
  Tally tally;
  const std::vector<std::string> tests =
      options.all ? catalogue.identifiers() : catalogue.resolveAll(options.tests);
  for (const std::string& test : tests) {
    const Verdict verdict = runTest(session, test, options.level.value_or(Level::kImmediate));
    tally.add(verdict);
    if (options.threadedMinutes && verdict != Verdict::kNoRecord) {
      runAgainOnThread(session, *options.threadedMinutes);
    }
  }
  if (tests.size() > 1) std::cout << tally.summary() << '\n';
  return tally.status();
}

}  // namespace host
