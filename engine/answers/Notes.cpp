#include "engine/answers/Notes.h"

#include <string>
#include <utility>

namespace engine {
namespace {

std::string textOf(const UnusableProvider& provider) {
  std::string text = "tests may be missing: provider " + provider.name + " cannot be used (" +
                     provider.state + ")";
  return provider.reason.empty() ? text : text + ": " + provider.reason;
}

}  // namespace

std::vector<Message> missingNotes(const Circumstances& circumstances) {
  std::vector<Message> notes;
  for (const UnusableProvider& one : circumstances.unusable)
    notes.push_back({Severity::kWarning, textOf(one), {}});
  return notes;
}

std::vector<Message> notesOf(const Circumstances& circumstances) {
  std::vector<Message> notes;
  for (const Finding& finding : circumstances.findings) {
    if (finding.weight == Weight::kWarning) notes.push_back({Severity::kWarning, finding.text, {}});
  }
  for (Message& note : missingNotes(circumstances)) notes.push_back(std::move(note));
  return notes;
}

}  // namespace engine
