#include <iostream>

#include "host/Messages.h"
#include "host/Output.h"
#include "host/verbs/Circumstances.h"
#include "host/verbs/Verbs.h"
#include "text/SafeText.h"

namespace host {

ExitStatus listTests(engine::Engine& engine, const Options& options) {
  const engine::Inventory found = engine.list(engine::Detail::kNames);
  reportWarnings(found.circumstances);
  reportUnusable(found.circumstances);
  if (options.raw) {
    std::cout << (found.tests.empty() ? found.listing : text::visible(found.listing));
  } else if (found.tests.empty()) {
    reportError(trimmed(found.listing));
  } else {
    for (const engine::OfferedTest& test : found.tests) printLine(test.identifier);
  }
  return found.tests.empty() ? ExitStatus::kNothingToRun : ExitStatus::kPassed;
}

}  // namespace host
