#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// Something that is not as it should be.
struct Finding {
  CompletionState state = CompletionState::Warning;  ///< what it makes of the run
  std::string code;                                  ///< under which it is counted: "Link width"
  std::string text;      ///< what, where, expected and found: a sentence without its end
  std::string whatToDo;  ///< in words that go on after a colon
  FaultyPart part = {};
};

/// Adds the findings to the outcome: of each lines of text and a note with what to do, of failures
/// a tally; the worst state of all.
void addFindings(Outcome& outcome, const std::vector<Finding>& findings);

/// What a run says that could not test at all, and why; `reason` is a sentence without its end.
Outcome notTested(const std::string& summary, const std::string& reason,
                  const std::string& whatToDo = {});

/// What a run says that was told to end, as far as it had come.
void markStopped(Outcome& outcome);

/// What a tally can hold of the number.
std::uint32_t clampCount(std::uint64_t number);

/// "1 port", "2 ports"
std::string countText(std::uint64_t number, const std::string& thing);

/// printf, to a text of at most some 200 characters.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* pattern, ...);

/// The text with '_' for what an identifier or a name in a list must not have: ',' and '|'.
std::string listable(std::string text);

}  // namespace providers
