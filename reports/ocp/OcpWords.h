#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/events/Event.h"

/// What events are called in an OCP stream.
namespace reports {

/// "DIAGS: Memory Test" as "diags-memory-test": the words that a countable verdict begins with.
std::string labelOf(std::string_view service);

/// "pass", "warning", "fail" or "unknown" behind the label.
std::string verdictOf(const std::string& label, engine::Verdict verdict);

/// PASS, FAIL or UNKNOWN. What passed with a warning is no failure.
const char* typeOf(engine::Verdict verdict) noexcept;

const char* severityOf(const engine::LogLine& line) noexcept;
const char* severityOf(const engine::Message& message) noexcept;

struct RunEnd {
  const char* status;
  const char* result;
};
/// The pair for how a run ended; its status is that of a test's step, too.
RunEnd endOf(engine::Outcome outcome) noexcept;

/// As a shell would take it.
std::string shellWords(const std::vector<std::string>& words);

}  // namespace reports
