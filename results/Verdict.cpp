#include "results/Verdict.h"

#include "runner/CoreLog.h"
#include "runner/Properties.h"
#include "runner/Text.h"

namespace diagsrunner {

namespace {

std::string wordFor(const std::string& state) {
  if (contains(state, "OK")) {
    return "Pass";
  }
  if (contains(state, "Aborted")) {
    return "Aborted";
  }
  if (contains(state, "Incomplete")) {
    return "Incomplete";
  }
  return "Fail";
}

}  // namespace

bool isDiagServiceFamily(const std::string& loweredTestName) {
  const bool hasVendor = contains(loweredTestName, "fusion-io:") ||
                         contains(loweredTestName, "fio:") || contains(loweredTestName, "zel:");
  return hasVendor && contains(loweredTestName, ":diag service");
}

std::string verdictOf(const boost::shared_ptr<NZELVOR20::ICIMInstance>& record,
                      const std::string& testName) {
  std::string state = renderedProperty(record, "CompletionState");
  if (isDiagServiceFamily(lowerCased(testName))) {
    logTrace("tempResult :", state);
    if (contains(state, "Warning")) {
      state = "OK";
    }
  }
  return wordFor(state);
}

}  // namespace diagsrunner
