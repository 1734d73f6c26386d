#include <iostream>
#include <string>

#include "engine/answers/AnswerJson.h"
#include "engine/plan/Duration.h"
#include "engine/plan/SettingValues.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/verbs/Circumstances.h"
#include "host/verbs/Verbs.h"
#include "text/SafeText.h"
#include "text/Words.h"

namespace host {
namespace {

std::string estimateOf(const engine::OfferedTest& test) {
  if (!(test.estimate > 0)) return "unknown";
  return engine::textOf(engine::durationOfSeconds(test.estimate));
}

std::string disturbanceOf(const engine::Characteristics& test) {
  std::string words;
  const auto add = [&words](bool has, const char* word) {
    if (has) words += (words.empty() ? "" : ", ") + std::string(word);
  };
  add(test.isDestructive, "may destroy data");
  add(test.isRisky, "may disturb the machine");
  add(test.isExclusive, "runs alone");
  add(test.isInteractive, "asks the user");
  return words;
}

void printFacts(const engine::OfferedTest& test) {
  printLine("  estimate: " + estimateOf(test));
  const std::string disturbance = disturbanceOf(test.characteristics);
  if (!disturbance.empty()) printLine("  note:     " + disturbance);
  for (const engine::SettingDeclaration& setting : test.settings) {
    const std::string range = engine::rangeOf(setting);
    printLine("  setting:  " + setting.name + " (" + setting.type +
              (range.empty() ? "" : ", " + range) + ")" +
              (setting.value.empty() ? std::string() : " = " + setting.value));
    if (!setting.description.empty()) printLine("            " + setting.description);
  }
}

void printTests(const engine::Inventory& found, bool isLong) {
  for (const engine::OfferedTest& test : found.tests) {
    printLine(test.identifier);
    if (isLong) printFacts(test);
  }
}

}  // namespace

ExitStatus listTests(engine::Engine& engine, const Options& options) {
  const bool wantsFacts = options.isLong || options.json;
  const engine::Inventory found =
      engine.list(wantsFacts ? engine::Detail::kFacts : engine::Detail::kNames);
  reportWarnings(found.circumstances);
  reportUnusable(found.circumstances);
  if (options.json) {
    std::cout << engine::jsonOf(found) << '\n';
  } else if (options.raw) {
    std::cout << (found.tests.empty() ? found.listing : text::visible(found.listing));
  } else if (found.tests.empty()) {
    reportError(std::string(text::trimmed(found.listing)));
  } else {
    printTests(found, options.isLong);
  }
  return found.tests.empty() ? ExitStatus::kNothingToRun : ExitStatus::kPassed;
}

}  // namespace host
