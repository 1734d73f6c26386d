#include "host/verbs/RunDisplay.h"

#include <iostream>
#include <string>

#include "host/Messages.h"
#include "host/Output.h"
#include "host/verbs/Circumstances.h"
#include "text/SafeText.h"

namespace host {
namespace {

std::string orNone(const std::string& text) { return text.empty() ? "none" : text; }

std::string wordFor(const engine::Ended& ended) {
  if (ended.outcome == engine::Outcome::kAborted) return "Aborted";
  return ended.outcome == engine::Outcome::kBroken ? "none" : orNone(ended.text);
}

}  // namespace

void RunDisplay::take(const engine::Event& event) {
  const std::string name = event.test == 0 ? std::string() : m_names[event.test];
  if (const auto* const test = std::get_if<engine::TestStarted>(&event.body)) {
    m_names[event.test] = test->name;
    printLine("Test: " + test->name);
    flushOutput();
  } else if (const auto* const progress = std::get_if<engine::Progress>(&event.body)) {
    printLine("");
    printLine("Percent Complete: " + std::to_string(static_cast<int>(progress->percent)) + "%");
    flushOutput();
  } else if (const auto* const line = std::get_if<engine::OutputLine>(&event.body)) {
    printLine(line->text);
  } else if (const auto* const message = std::get_if<engine::Message>(&event.body)) {
    reportError(name.empty() ? message->text : name + ": " + message->text);
  } else if (const auto* const error = std::get_if<engine::Error>(&event.body)) {
    m_errors[event.test] = textOf(*error);
  } else if (const auto* const diagnosis = std::get_if<engine::Diagnosis>(&event.body)) {
    printLine(diagnosis->text);
  } else if (const auto* const ended = std::get_if<engine::Ended>(&event.body)) {
    if (event.test == 0) return;
    showVerdict(*ended);
    flushOutput();
    if (!m_errors[event.test].empty()) reportError(name + ": " + m_errors[event.test]);
    m_names.erase(event.test);
    m_errors.erase(event.test);
  }
}

void RunDisplay::showVerdict(const engine::Ended& ended) const {
  if (ended.outcome == engine::Outcome::kSkipped) return printLine("Skipped: " + ended.text);
  if (m_namesLevels) {
    for (const Level level : m_levels) showLevel(level, ended);
    return;
  }
  const Level shown = m_levels.front();
  const std::string remark = ended.remark.empty() ? "" : " - " + ended.remark;
  if (shown == Level::kSimple) return printLine("Verdict: " + orNone(ended.brief) + remark);
  if (shown == Level::kImmediate) return printLine("Verdict: " + wordFor(ended) + remark);
  printLine("Verdict: " + wordFor(ended));
  printApart(orNone(ended.record));
}

void RunDisplay::showLevel(Level level, const engine::Ended& ended) const {
  if (level == Level::kSimple) return printLine("Simple: " + orNone(ended.brief));
  if (level == Level::kImmediate) return printLine("Immediate: " + wordFor(ended));
  printLine("Extended:");
  printApart(orNone(ended.record));
}

}  // namespace host
