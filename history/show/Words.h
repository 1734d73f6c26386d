#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "history/Records.h"

/// How the tables say things. Texts that come from outside are harmless afterwards.
namespace history {

/// "passed", "failed" and so on; "running" or "cut off" for a run that has not ended.
std::string verdictOf(const RunRecord& run);
std::string verdictOf(const TestVerdict& verdict);

/// "3 passed, 1 failed"; "no tests" where none has ended.
std::string countsOf(const Counts& counts);

/// "2.5 s", "12 min 3 s", "8 h 2 min".
std::string durationOf(std::chrono::microseconds duration);

/// "2026-11-22 01:30:00", UTC.
std::string dateOf(engine::Time time);

/// Up to six digits that matter, and no more than needed.
std::string numberOf(double number);

/// "5.2 MB/s", or the text that was measured.
std::string valueOf(const Measured& measured, const std::string& unit);

/// "read", or "read of DIMM 1".
std::string measurementOf(const std::string& name, const std::string& part);

/// How many columns of a terminal such a text takes, one for each character.
std::size_t columnsOf(std::string_view text);

/// The text with blanks behind it, or before it, so that it takes as many columns.
std::string padded(const std::string& text, std::size_t columns);
std::string paddedBefore(const std::string& text, std::size_t columns);

}  // namespace history
