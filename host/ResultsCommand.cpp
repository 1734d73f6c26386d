#include <iostream>

#include "host/Commands.h"
#include "host/Messages.h"
#include "host/TestRun.h"

namespace host {
namespace {

void printLevel(TestRun& run, Level level) {
  switch (level) {
    case Level::kSimple:
      std::cout << "Simple: ";
      break;
    case Level::kImmediate:
      std::cout << "Immediate: ";
      break;
    case Level::kExtended:
      std::cout << "Extended:\n";
      break;
  }
  std::cout << run.text(level) << '\n';
}

}  // namespace

ExitStatus showResults(Session& session, const Options& options) {
  TestRun run(session, session.catalogue().resolve(options.tests.front()));
  std::cout << "Test: " << run.identifier() << std::endl;
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
