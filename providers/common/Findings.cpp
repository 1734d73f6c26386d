#include "providers/common/Findings.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <utility>

#include "providers/common/Step.h"

namespace providers {

namespace {

/// The worse, the higher.
int weight(CompletionState state) {
  switch (state) {
    case CompletionState::Failed:
      return 3;
    case CompletionState::Warning:
      return 2;
    case CompletionState::Incomplete:
      return 1;
    default:
      return 0;
  }
}

void count(Outcome& outcome, const std::string& code) {
  const auto known = std::find_if(outcome.errors.begin(), outcome.errors.end(),
                                  [&code](const ErrorTally& tally) { return tally.code == code; });
  if (known != outcome.errors.end())
    ++known->count;
  else
    outcome.errors.push_back({code, 1});
}

Note noteOf(const Finding& finding) {
  const bool failed = finding.state == CompletionState::Failed;
  Note note;
  note.type = failed ? RecordType::DeviceErrors : RecordType::Warnings;
  note.text = finding.text + "\n";
  if (!finding.whatToDo.empty()) note.text += "What to do: " + finding.whatToDo + "\n";
  if (failed) note.errors = {{finding.code, 1}};
  if (!finding.whatToDo.empty()) note.correctiveAction = step(finding.whatToDo);
  note.part = finding.part;
  return note;
}

}  // namespace

void addFindings(Outcome& outcome, const std::vector<Finding>& findings) {
  for (const Finding& finding : findings) {
    Note note = noteOf(finding);
    if (weight(finding.state) > weight(outcome.state)) outcome.state = finding.state;
    if (finding.state == CompletionState::Failed) count(outcome, finding.code);
    outcome.text += note.text;
    outcome.notes.push_back(std::move(note));
  }
}

Outcome notTested(const std::string& summary, const std::string& reason,
                  const std::string& whatToDo) {
  Outcome outcome;
  outcome.state = CompletionState::Incomplete;
  outcome.summary = summary;
  outcome.text = summary + "\n" + reason + "\n";
  if (!whatToDo.empty()) outcome.text += "What to do: " + whatToDo + "\n";
  Note note;
  note.type = RecordType::ServiceErrors;
  note.text = outcome.text;
  if (!whatToDo.empty()) note.correctiveAction = step(whatToDo);
  outcome.notes.push_back(std::move(note));
  return outcome;
}

void markStopped(Outcome& outcome) {
  if (outcome.state != CompletionState::Failed) outcome.state = CompletionState::Stopped;
  outcome.text += "Stopped before the end\n";
}

std::uint32_t clampCount(std::uint64_t number) {
  return static_cast<std::uint32_t>(
      std::min<std::uint64_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

std::string countText(std::uint64_t number, const std::string& thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

std::string formatted(const char* pattern, ...) {
  std::array<char, 224> text{};
  va_list arguments;
  va_start(arguments, pattern);
  std::vsnprintf(text.data(), text.size(), pattern, arguments);
  va_end(arguments);
  return text.data();
}

std::string listable(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char letter) { return letter == ',' || letter == '|'; }, '_');
  return text;
}

}  // namespace providers
