#include "host/display/Wording.h"

#include <cstdio>
#include <numeric>

#include "engine/events/EventNames.h"

namespace host {
namespace {

using engine::Outcome;

std::string figure(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", number);
  return text;
}

std::string valueText(const engine::MeasuredValue& value) {
  if (const auto* const number = std::get_if<double>(&value)) return figure(*number);
  if (const auto* const truth = std::get_if<bool>(&value)) return *truth ? "yes" : "no";
  return std::get<std::string>(value);
}

std::string limitsText(const engine::Measurement& measurement) {
  std::string text;
  if (measurement.minimum) text += "at least " + figure(*measurement.minimum);
  if (measurement.maximum) {
    text += (text.empty() ? "at most " : ", at most ") + figure(*measurement.maximum);
  }
  return text.empty() ? text : " (" + text + ")";
}

std::string withActions(std::string text, const std::vector<std::string>& actions) {
  for (const std::string& action : actions) text += "\nTo do: " + action;
  return text;
}

std::string named(const std::string& name, const std::string& text) {
  return name.empty() ? text : text.empty() ? name : name + ": " + text;
}

struct Teller {
  std::string operator()(const engine::StepStarted& step) const { return "Step: " + step.name; }
  std::string operator()(const engine::OutputLine& line) const {
    return (line.stream == engine::Stream::kError ? "Error output: " : "Output: ") + line.text;
  }
  std::string operator()(const engine::LogLine& line) const {
    static const char* const kLevels[] = {"error", "warning", "info", "trace"};
    const bool isKnown = line.level >= 0 && line.level < 4;
    return std::string("Log: ") + (isKnown ? kLevels[line.level] : "trace") + ": " + line.text;
  }
  std::string operator()(const engine::Message& message) const {
    return withActions(std::string("Message: ") + nameOf(message.severity) + ": " + message.text,
                       message.actions);
  }
  std::string operator()(const engine::Measurement& measurement) const {
    return "Measured: " + named(measurement.part, measurement.name) + ": " +
           valueText(measurement.value) + (measurement.unit.empty() ? "" : " ") + measurement.unit +
           limitsText(measurement);
  }
  template <class Other>
  std::string operator()(const Other&) const {
    return {};
  }
};

/// What stands behind the word: the runner's answer where that is more than the word, the remark.
std::string behindWord(const engine::Ended& end, const std::string& word) {
  std::string text = end.text == word || end.outcome == Outcome::kWarned ? "" : end.text;
  if (!end.remark.empty()) text += (text.empty() ? "" : " - ") + end.remark;
  return text;
}

std::string orElse(const std::string& text, const char* other) {
  return text.empty() ? other : text;
}

}  // namespace

std::string verdictWord(const engine::Ended& end) {
  switch (end.outcome) {
    case Outcome::kPassed:
      return orElse(end.text, "Pass");
    case Outcome::kWarned:
      return end.text == "Warning" ? end.text : orElse(end.text, "Pass") + " (warning)";
    case Outcome::kFailed:
      return orElse(end.text, "Fail");
    case Outcome::kAborted:
      return orElse(end.text, "Aborted");
    case Outcome::kIncomplete:
      return orElse(end.text, "Incomplete");
    case Outcome::kSkipped:
      return "skipped";
    case Outcome::kBroken:
      break;
  }
  return "none";
}

std::string verdictText(const engine::Ended& end, Level level) {
  const std::string word = verdictWord(end);
  if (level == Level::kSimple && !end.brief.empty()) {
    return end.remark.empty() ? end.brief : end.brief + " - " + end.remark;
  }
  if (level == Level::kExtended && !end.record.empty()) return word;
  const std::string behind = behindWord(end, word);
  return behind.empty() ? word : word + " - " + behind;
}

std::string detailText(const engine::Body& body) { return std::visit(Teller(), body); }

std::string findingText(const engine::Diagnosis& finding) {
  const char* const kind = finding.verdict == engine::Verdict::kFail      ? "Fault: "
                           : finding.verdict == engine::Verdict::kWarning ? "Warning: "
                           : finding.verdict == engine::Verdict::kPass    ? "Good: "
                                                                          : "Found: ";
  return withActions(kind + named(finding.part, finding.text), finding.actions);
}

std::string errorText(const engine::Error& error) {
  std::string text = error.text.substr(0, error.text.find_last_not_of(" \t\r\n") + 1);
  if (text.empty()) text = engine::nameOf(error.cause);
  const std::string where = named(error.provider, error.operation);
  return where.empty() ? text : text + " (in " + where + ")";
}

std::uint64_t Summary::total() const {
  return std::accumulate(m_counts.begin(), m_counts.end(), std::uint64_t{0});
}

std::string Summary::text() const {
  const std::uint64_t passed = count(Outcome::kPassed) + count(Outcome::kWarned);
  const std::uint64_t failed = count(Outcome::kFailed);
  const std::uint64_t skipped = count(Outcome::kSkipped);
  std::string text = std::to_string(total()) + (total() == 1 ? " test: " : " tests: ") +
                     std::to_string(passed) + " passed, " + std::to_string(failed) + " failed, " +
                     std::to_string(total() - passed - failed - skipped) + " without a verdict";
  return skipped == 0 ? text : text + ", " + std::to_string(skipped) + " skipped";
}

}  // namespace host
