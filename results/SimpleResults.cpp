#include "diagsrunner/DiagsRunner.h"
#include "results/RecordSearch.h"
#include "results/Verdict.h"
#include "runner/CoreLog.h"
#include "runner/InstanceLookup.h"

namespace {

std::string noSimpleResult() {
  diagsrunner::logTrace("DiagsRunner::SimpleResults - Returning: No extended results");
  diagsrunner::logTrace("Exiting DiagsRunner::SimpleResults");
  return {};
}

std::string noValidInstance() {
  diagsrunner::logTrace("DiagsRunner::SimpleResults  - No Valid Instance Found");
  return noSimpleResult();
}

}  // namespace

std::string DiagsRunner::SimpleResults(std::string testID,
                                       boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  diagsrunner::logTrace("Entering DiagsRunner::SimpleResults");
  // An unknown test gains a null entry here: it is not refused at this level of detail.
  const NZELVOR20::TOptionsMap options = diagsrunner::familyOptions(m_diagNS[testID]);
  diagsrunner::RunKey run;
  std::string deviceID;
  std::string elementName;
  if (!GetTestName(testID, run.testName, deviceID, elementName)) {
    diagsrunner::logTrace("DiagsRunner::SimpleResults - GetTestName Failed");
    return noSimpleResult();
  }
  const auto finished = m_finishedTests.find(testID);
  if (finished == m_finishedTests.end()) {
    return noValidInstance();
  }
  run.jobIdentifier = finished->second;
  const auto recordClass = diagsrunner::completionRecordClass(ns, options);
  const auto record = diagsrunner::findRecord(diagsrunner::enumerateRecords(recordClass, {}), run);
  if (!record) {
    return noValidInstance();
  }
  return "(" + diagsrunner::verdictOf(record, run.testName) + ")";
}
