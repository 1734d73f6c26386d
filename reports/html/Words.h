#pragma once

#include <string>

#include "engine/events/Event.h"

/// What the page calls things.
namespace reports::html {

/// How a thing looks: its class in the style sheet, and the word on its badge.
struct Look {
  const char* style;  ///< "pass", "warn", "fail" or "open"
  const char* word;
};

Look lookOf(engine::Outcome outcome);
Look lookOf(engine::Verdict verdict);
Look lookOf(engine::Severity severity);

/// Which outcome a reader has to see first: the higher, the sooner.
int rankOf(engine::Outcome outcome);

/// Whether it took any time.
inline bool ran(const engine::Ended& end) { return end.outcome != engine::Outcome::kSkipped; }

/// What happened, as a sentence without its end.
const char* sentenceOf(engine::Cause cause);

/// The service's name, or where there is none the whole identifier.
std::string serviceOf(const engine::TestStarted& test);

/// Device and element; may be empty.
std::string whereOf(const engine::TestStarted& test);

}  // namespace reports::html
