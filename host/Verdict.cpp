#include "host/Verdict.h"

namespace host {

std::string trimmed(const std::string& text) {
  static const char* const kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

Verdict verdictOf(const std::string& runText) {
  const std::string word = trimmed(runText);
  if (word == "Pass") return Verdict::kPass;
  if (word == "Fail") return Verdict::kFail;
  if (word == "Aborted") return Verdict::kAborted;
  if (word == "Incomplete") return Verdict::kIncomplete;
  return Verdict::kNoRecord;
}

void Tally::add(Verdict verdict) {
  if (verdict == Verdict::kPass) {
    ++m_passed;
  } else if (verdict == Verdict::kFail) {
    ++m_failed;
  } else {
    ++m_undecided;
  }
}

ExitStatus Tally::status() const {
  if (m_failed > 0) return ExitStatus::kFailed;
  if (m_undecided > 0 || !m_isComplete) return ExitStatus::kCouldNotRun;
  return m_passed > 0 ? ExitStatus::kPassed : ExitStatus::kNothingToRun;
}

std::string Tally::summary() const {
  return std::to_string(total()) + (total() == 1 ? " test: " : " tests: ") +
         std::to_string(m_passed) + " passed, " + std::to_string(m_failed) + " failed, " +
         std::to_string(m_undecided) + " without a verdict";
}

}  // namespace host
