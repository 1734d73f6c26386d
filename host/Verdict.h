#pragma once

#include <cstddef>
#include <string>

#include "host/ExitStatus.h"

namespace host {

/// How a run ended.
enum class Verdict {
  kPass,
  kFail,
  kAborted,
  kIncomplete,
  kNoRecord,  ///< the run left no record: it never started, or its outcome was lost
};

/// The verdict that the text of a run stands for.
Verdict verdictOf(const std::string& runText);

/// `text` without blanks and line ends around it.
std::string trimmed(const std::string& text);

/// Counts verdicts and draws the exit status from them.
class Tally {
 public:
  void add(Verdict verdict);

  /// A provider could not be used: tests may be missing.
  void addUnusableProvider() { m_isComplete = false; }

  /// A hardware fault outweighs a test that could not run or is missing, which outweighs the
  /// passes.
  ExitStatus status() const;

  std::size_t total() const { return m_passed + m_failed + m_undecided; }

  /// "3 tests: 1 passed, 1 failed, 1 without a verdict".
  std::string summary() const;

 private:
  std::size_t m_passed = 0;
  std::size_t m_failed = 0;
  std::size_t m_undecided = 0;
  bool m_isComplete = true;
};

}  // namespace host
