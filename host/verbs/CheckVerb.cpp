#include <iostream>

#include "engine/answers/AnswerJson.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/verbs/Circumstances.h"
#include "host/verbs/Verbs.h"

namespace host {

ExitStatus checkInstallation(engine::Engine& engine, const Options& options) {
  const engine::CheckAnswer answer = engine.check();
  if (options.json) {
    std::cout << engine::jsonOf(answer) << '\n';
    return answer.isFaultless ? ExitStatus::kPassed : ExitStatus::kCouldNotRun;
  }
  for (const engine::Finding& finding : answer.circumstances.findings) printLine(finding.text);
  for (const engine::UnusableProvider& one : answer.circumstances.unusable) {
    printLine("provider " + one.name + ": " + one.reason);
  }
  if (!answer.isFaultless) return ExitStatus::kCouldNotRun;
  printLine("No faults found in " + options.root);
  return ExitStatus::kPassed;
}

}  // namespace host
