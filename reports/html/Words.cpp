#include "reports/html/Words.h"

namespace reports::html {

Look lookOf(engine::Outcome outcome) {
  switch (outcome) {
    case engine::Outcome::kPassed:
      return {"pass", "Passed"};
    case engine::Outcome::kWarned:
      return {"warn", "Warning"};
    case engine::Outcome::kFailed:
      return {"fail", "Failed"};
    case engine::Outcome::kAborted:
      return {"open", "Stopped"};
    case engine::Outcome::kIncomplete:
      return {"open", "Incomplete"};
    case engine::Outcome::kSkipped:
      return {"open", "Skipped"};
    case engine::Outcome::kBroken:
      break;
  }
  return {"open", "No verdict"};
}

Look lookOf(engine::Verdict verdict) {
  switch (verdict) {
    case engine::Verdict::kPass:
      return {"pass", "Good"};
    case engine::Verdict::kWarning:
      return {"warn", "Warning"};
    case engine::Verdict::kFail:
      return {"fail", "Faulty"};
    case engine::Verdict::kUnknown:
      break;
  }
  return {"open", "Unknown"};
}

Look lookOf(engine::Severity severity) {
  switch (severity) {
    case engine::Severity::kWarning:
      return {"warn", "Warning"};
    case engine::Severity::kError:
      return {"fail", "Error"};
    case engine::Severity::kInfo:
      break;
  }
  return {"info", "Note"};
}

int rankOf(engine::Outcome outcome) {
  switch (outcome) {
    case engine::Outcome::kFailed:
      return 6;
    case engine::Outcome::kBroken:
      return 5;
    case engine::Outcome::kIncomplete:
      return 4;
    case engine::Outcome::kAborted:
      return 3;
    case engine::Outcome::kWarned:
      return 2;
    case engine::Outcome::kSkipped:
      return 1;
    case engine::Outcome::kPassed:
      break;
  }
  return 0;
}

const char* sentenceOf(engine::Cause cause) {
  switch (cause) {
    case engine::Cause::kRefused:
      return "The test did not start";
    case engine::Cause::kException:
      return "The test ended by an exception";
    case engine::Cause::kExited:
      return "The test ended its own process";
    case engine::Cause::kCrashed:
      return "The test crashed";
    case engine::Cause::kKilled:
      return "The test was ended from outside";
    case engine::Cause::kOutOfMemory:
      return "The test ran out of memory";
    case engine::Cause::kTimedOut:
      return "The time was up, and the test did not end";
    case engine::Cause::kProtocol:
      return "What the test's process said made no sense";
    case engine::Cause::kOther:
      break;
  }
  return "Something could not be done";
}

std::string serviceOf(const engine::TestStarted& test) {
  return test.service.empty() ? test.name : test.service;
}

std::string whereOf(const engine::TestStarted& test) {
  if (test.device.empty()) return test.element;
  return test.element.empty() ? test.device : test.device + " \xC2\xB7 " + test.element;
}

}  // namespace reports::html
