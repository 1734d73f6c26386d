#include "libdiags/Notes.h"

#include <string>

namespace libdiags {
namespace {

std::string textOf(const engine::UnusableProvider& provider) {
  std::string text = "tests may be missing: provider " + provider.name + " cannot be used (" +
                     provider.state + ")";
  return provider.reason.empty() ? text : text + ": " + provider.reason;
}

}  // namespace

std::vector<engine::Message> notesOf(const engine::Circumstances& circumstances) {
  std::vector<engine::Message> notes;
  for (const engine::Finding& finding : circumstances.findings) {
    if (finding.weight == engine::Weight::kWarning)
      notes.push_back({engine::Severity::kWarning, finding.text, {}});
  }
  for (const engine::UnusableProvider& one : circumstances.unusable)
    notes.push_back({engine::Severity::kWarning, textOf(one), {}});
  return notes;
}

}  // namespace libdiags
