#include "diagsrunner/DiagsRunner.h"
#include "results/RecordSearch.h"
#include "runner/CoreLog.h"
#include "runner/InstanceLookup.h"
#include "runner/Properties.h"

namespace {

std::string noExtendedResult() {
  diagsrunner::logTrace("DiagsRunner::ExtendedResults - Returning: No extended results");
  diagsrunner::logTrace("Exiting DiagsRunner::ExtendedResults");
  return "No extended results.\n";
}

std::string noValidInstance() {
  diagsrunner::logTrace("DiagsRunner::ExtendedResults  - No Valid Instance Found");
  return noExtendedResult();
}

}  // namespace

std::string DiagsRunner::ExtendedResults(std::string testID,
                                         boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  diagsrunner::logTrace("Entering DiagsRunner::ExtendedResults");
  const auto family = m_diagNS.find(testID);
  if (family == m_diagNS.end()) {
    diagsrunner::logTrace("DiagsRunner::ExtendedResults testID is not found in m_diagNS");
    return "testID is not found in m_diagNS.\n";
  }
  const NZELVOR20::TOptionsMap options = diagsrunner::familyOptions(family->second);
  diagsrunner::RunKey run;
  std::string deviceID;
  std::string elementName;
  if (!GetTestName(testID, run.testName, deviceID, elementName)) {
    diagsrunner::logTrace("DiagsRunner::ExtendedResults - GetTestName Failed");
    return noExtendedResult();
  }
  const auto finished = m_finishedTests.find(testID);
  if (finished == m_finishedTests.end()) {
    return noValidInstance();
  }
  run.jobIdentifier = finished->second;
  const auto recordClass = diagsrunner::completionRecordClass(ns, options);
  const auto record =
      diagsrunner::findRecord(diagsrunner::enumerateRecords(recordClass, options), run);
  if (!record) {
    return noValidInstance();
  }
  return diagsrunner::renderedProperty(record, "RecordData");
}
