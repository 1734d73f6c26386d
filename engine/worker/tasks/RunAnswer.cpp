#include "engine/worker/tasks/RunAnswer.h"

#include "engine/worker/tasks/Session.h"
#include "text/Words.h"

namespace engine::tasks {
namespace {

struct VerdictWord {
  const char* text;
  Outcome outcome;
};

const VerdictWord kVerdicts[] = {{"Pass", Outcome::kPassed},
                                 {"Fail", Outcome::kFailed},
                                 {"Aborted", Outcome::kAborted},
                                 {"Incomplete", Outcome::kIncomplete}};

/// The runner's other answers, word for word, and what they mean.
struct Explanation {
  const char* text;
  Cause cause;
  const char* meaning;
};

const Explanation kExplanations[] = {
    {"", Cause::kRefused, "the test did not start"},
    {"No Status\n", Cause::kRefused,
     "No Status: the service started no job; another run may be going on with the same device"},
    {"No Results.\n", Cause::kOther,
     "No Results.: the test ended, and left no record that can be read"},
    {"No matching diagnostic test or device found.\n", Cause::kRefused,
     "No matching diagnostic test or device found: no provider offers this test any more"},
    {" No matching diagnostic test or device found.\n", Cause::kRefused,
     "No matching diagnostic test or device found: its service and its device are not found "
     "together any more"}};

/// The runner has no word for a test that ends with a warning, but for one family: it takes
/// whatever is none of its four states for a failure. Of its own tests this program knows better.
bool isOwnWarning(const RunAnswer& answer) {
  return answer.state == "Warning" && isOurs(answer.recordClass);
}

const VerdictWord* verdictIn(const std::string& text) {
  const std::string_view word = text::trimmed(text);
  for (const VerdictWord& one : kVerdicts) {
    if (word == one.text) return &one;
  }
  return nullptr;
}

Outcome outcomeOf(const RunAnswer& answer) {
  const VerdictWord* const verdict = verdictIn(answer.text);
  if (verdict == nullptr) return answer.wasStopped ? Outcome::kAborted : Outcome::kBroken;
  if (answer.wasStopped && verdict->outcome == Outcome::kFailed) return Outcome::kAborted;
  if (verdict->outcome == Outcome::kFailed && isOwnWarning(answer)) return Outcome::kWarned;
  const bool isWarning = verdict->outcome == Outcome::kPassed && answer.state == "Warning";
  return isWarning ? Outcome::kWarned : verdict->outcome;
}

}  // namespace

bool isOurs(const std::string& recordClass) { return recordClass.rfind("DIAGS_", 0) == 0; }

bool isVerdict(const std::string& text) { return verdictIn(text) != nullptr; }

Ended endOf(const RunAnswer& answer) {
  Ended ended;
  ended.outcome = outcomeOf(answer);
  if (isVerdict(answer.text)) ended.text = text::trimmed(answer.text);
  ended.brief = answer.brief;
  if (ended.outcome == Outcome::kWarned && ended.text == "Fail") {
    ended.text = "Warning";
    ended.brief = "(Warning)";
  }
  ended.remark = answer.remark;
  ended.record = answer.record;
  return ended;
}

void doubt(Ended& ended, const RunAnswer& answer) {
  if (isOurs(answer.recordClass) && ended.outcome == Outcome::kPassed)
    ended.outcome = Outcome::kWarned;
}

std::optional<Error> errorOf(const RunAnswer& answer) {
  if (isVerdict(answer.text) || answer.wasStopped) return std::nullopt;
  Error error;
  if (!answer.exception.empty()) {
    error.cause = Cause::kException;
    error.text = answer.exception;
    return error;
  }
  error.text = text::trimmed(answer.text);
  for (const Explanation& one : kExplanations) {
    if (answer.text != one.text) continue;
    error.cause = one.cause;
    error.text = one.meaning;
  }
  if (!answer.thrown.provider.empty()) {
    error.cause = Cause::kException;
    error.provider = answer.thrown.provider;
    error.text += "; " + answer.thrown.text;
  }
  return error;
}

}  // namespace engine::tasks
