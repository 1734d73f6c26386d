#include "fleet/reading/Step.h"

#include <algorithm>

#include "engine/events/EventNames.h"

namespace fleet {
namespace {

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

Verdict foundBy(const Step& step, std::string_view status) {
  if (step.hasFailure) return Verdict::kFailed;
  if (status == "SKIP") return Verdict::kSkipped;
  if (status != "COMPLETE" || step.hasError) return Verdict::kUnfinished;
  if (step.isUnknown && !step.hasPass) return Verdict::kUnfinished;
  return step.hasWarning ? Verdict::kWarned : Verdict::kPassed;
}

}  // namespace

std::string_view withoutRepetition(std::string_view name) {
  constexpr std::string_view kMark = " (repetition ";
  const std::size_t begin = name.rfind(kMark);
  if (begin == std::string_view::npos || begin == 0 || !endsWith(name, ")")) return name;
  const std::string_view number =
      name.substr(begin + kMark.size(), name.size() - begin - kMark.size() - 1);
  const bool isNumber =
      !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
  return isNumber ? name.substr(0, begin) : name;
}

Verdict takeDiagnosis(Step& step, const Line& line) {
  if (line.word == "FAIL") {
    step.hasFailure = true;
    return Verdict::kFailed;
  }
  if (line.word != "PASS") {
    step.isUnknown = true;
    return Verdict::kUnfinished;
  }
  step.hasPass = true;
  if (!endsWith(line.second, "warning")) return Verdict::kPassed;
  step.hasWarning = true;
  return Verdict::kWarned;
}

Verdict outcomeNamed(std::string_view word) {
  engine::Outcome outcome{};
  if (!engine::readName(word, outcome)) return Verdict::kNone;
  switch (outcome) {
    case engine::Outcome::kPassed:
      return Verdict::kPassed;
    case engine::Outcome::kWarned:
      return Verdict::kWarned;
    case engine::Outcome::kFailed:
      return Verdict::kFailed;
    case engine::Outcome::kSkipped:
      return Verdict::kSkipped;
    case engine::Outcome::kAborted:
    case engine::Outcome::kIncomplete:
    case engine::Outcome::kBroken:
      break;
  }
  return Verdict::kUnfinished;
}

Verdict verdictOf(const Step& step, std::string_view status) {
  if (step.told == Verdict::kNone) return foundBy(step, status);
  return step.hasFailure ? Verdict::kFailed : step.told;
}

}  // namespace fleet
