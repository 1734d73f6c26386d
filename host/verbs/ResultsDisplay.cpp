#include "host/verbs/ResultsDisplay.h"

#include "host/Messages.h"
#include "host/Output.h"
#include "host/display/Wording.h"

namespace host {
namespace {

std::string orNone(const std::string& text) { return text.empty() ? "none" : text; }

void showLevel(Level level, const engine::Ended& ended) {
  if (level == Level::kSimple) return printLine("Simple: " + orNone(ended.brief));
  if (level == Level::kImmediate) return printLine("Immediate: " + orNone(verdictWord(ended)));
  printLine("Extended:");
  printApart(orNone(ended.record));
}

}  // namespace

void ResultsDisplay::take(const engine::Event& event) {
  if (const auto* const test = std::get_if<engine::TestStarted>(&event.body)) {
    m_names[event.test] = test->name;
    printLine("Test: " + test->name);
  } else if (const auto* const progress = std::get_if<engine::Progress>(&event.body)) {
    printLine("Percent Complete: " + std::to_string(static_cast<int>(progress->percent)) + "%");
  } else if (const auto* const line = std::get_if<engine::OutputLine>(&event.body)) {
    printLine(line->text);
  } else if (const auto* const error = std::get_if<engine::Error>(&event.body)) {
    m_errors[event.test] = errorText(*error);
  } else if (const auto* const ended = std::get_if<engine::Ended>(&event.body)) {
    if (event.test == 0) return;
    for (const Level level : m_levels) showLevel(level, *ended);
    const std::string& why = m_errors[event.test];
    if (!why.empty()) reportError(m_names[event.test] + ": " + why);
  }
  flushOutput();
}

}  // namespace host
