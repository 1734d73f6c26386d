#include <string>

#include "host/Messages.h"
#include "host/Output.h"
#include "host/verbs/Circumstances.h"
#include "host/verbs/Verbs.h"

namespace host {

ExitStatus inspectClass(engine::Engine& engine, const Options& options) {
  const engine::InspectAnswer answer = engine.inspect(options.className);
  for (const engine::AnswerLine& line : answer.lines) {
    if (line.name.empty()) {
      printLine(line.value);
    } else {
      printField(line.name, line.value);
    }
  }
  reportWarnings(answer.circumstances);
  const bool wasLeftOut = hasLeftOut(answer.circumstances);
  if (!answer.nothing.empty() && !wasLeftOut) reportError(answer.nothing);
  reportUnusable(answer.circumstances);
  if (!answer.lines.empty()) return ExitStatus::kPassed;
  return wasLeftOut ? ExitStatus::kCouldNotRun : ExitStatus::kNothingToRun;
}

}  // namespace host
