#include "host/Commands.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/TestRun.h"

namespace host {
namespace {

void printLevel(TestRun& run, Level level) {
  switch (level) {
    case Level::kSimple:
      return printLine("Simple: " + run.text(level));
    case Level::kImmediate:
      return printLine("Immediate: " + run.text(level));
    case Level::kExtended:
      printLine("Extended:");
      printApart(run.text(level));
  }
}

}  // namespace

ExitStatus showResults(Session& session, const Options& options) {
  TestRun run(session, session.catalogue().resolve(options.tests.front()));
  printLine("Test: " + run.identifier());
  flushOutput();
  run.execute();
  if (options.level) {
    printLevel(run, *options.level);
  } else {
    for (const Level level : {Level::kSimple, Level::kImmediate, Level::kExtended}) {
      printLevel(run, level);
    }
  }
  if (!run.error().empty()) reportError(run.identifier() + ": " + run.error());
  Tally tally;
  tally.add(run.verdict());
  return tally.status();
}

}  // namespace host
