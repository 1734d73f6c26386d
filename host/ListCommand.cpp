#include <iostream>

#include "host/Commands.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/Verdict.h"
#include "text/SafeText.h"

namespace host {

ExitStatus listTests(Session& session, const Options& options) {
  const std::string listing = session.listing();
  const std::vector<std::string> tests = splitListing(listing);
  if (options.raw) {
    std::cout << (tests.empty() ? listing : text::visible(listing));
  } else if (tests.empty()) {
    reportError(trimmed(listing));
  } else {
    for (const std::string& test : tests) printLine(test);
  }
  return tests.empty() ? ExitStatus::kNothingToRun : ExitStatus::kPassed;
}

}  // namespace host
