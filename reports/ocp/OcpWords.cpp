#include "reports/ocp/OcpWords.h"

#include "engine/events/EventNames.h"

namespace reports {
namespace {

using engine::Verdict;

constexpr std::size_t kLongestLabel = 80;

bool isLetterOrDigit(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= '0' && byte <= '9');
}

char lowered(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool needsQuotes(const std::string& word) {
  if (word.empty()) return true;
  for (const char byte : word) {
    if (!isLetterOrDigit(byte) && std::string_view("-_=+:,./@%").find(byte) == std::string::npos) {
      return true;
    }
  }
  return false;
}

std::string quoted(const std::string& word) {
  std::string text = "'";
  for (const char byte : word) {
    if (byte == '\'') {
      text += "'\\''";
    } else {
      text += byte;
    }
  }
  return text + "'";
}

}  // namespace

std::string labelOf(std::string_view service) {
  std::string label;
  for (const char byte : service) {
    if (label.size() == kLongestLabel) break;
    if (isLetterOrDigit(byte)) {
      label += lowered(byte);
    } else if (!label.empty() && label.back() != '-') {
      label += '-';
    }
  }
  while (!label.empty() && label.back() == '-') label.pop_back();
  return label.empty() ? "test" : label;
}

std::string verdictOf(const std::string& label, Verdict verdict) {
  return label + "-" + engine::nameOf(verdict);
}

const char* typeOf(Verdict verdict) noexcept {
  switch (verdict) {
    case Verdict::kPass:
    case Verdict::kWarning:
      return "PASS";
    case Verdict::kFail:
      return "FAIL";
    case Verdict::kUnknown:
      break;
  }
  return "UNKNOWN";
}

const char* severityOf(const engine::LogLine& line) noexcept {
  constexpr const char* kSeverities[] = {"ERROR", "WARNING", "INFO", "DEBUG"};
  return line.level >= 0 && line.level <= 3 ? kSeverities[line.level] : "DEBUG";
}

const char* severityOf(const engine::Message& message) noexcept {
  if (message.severity == engine::Severity::kError) return "ERROR";
  return message.severity == engine::Severity::kWarning ? "WARNING" : "INFO";
}

RunEnd endOf(engine::Outcome outcome) noexcept {
  switch (outcome) {
    case engine::Outcome::kPassed:
    case engine::Outcome::kWarned:
      return {"COMPLETE", "PASS"};
    case engine::Outcome::kFailed:
      return {"COMPLETE", "FAIL"};
    case engine::Outcome::kSkipped:
      return {"SKIP", "NOT_APPLICABLE"};
    case engine::Outcome::kAborted:
    case engine::Outcome::kIncomplete:
    case engine::Outcome::kBroken:
      break;
  }
  return {"ERROR", "NOT_APPLICABLE"};
}

std::string shellWords(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += ' ';
    text += needsQuotes(word) ? quoted(word) : word;
  }
  return text;
}

}  // namespace reports
