#include "diagsrunner/DiagsRunner.h"
#include "framework/TCIMCopy.h"
#include "framework/TVORException.h"
#include "results/RecordSearch.h"
#include "results/RecordWait.h"
#include "results/VendorMessages.h"
#include "results/Verdict.h"
#include "runner/CoreLog.h"
#include "runner/InstanceLookup.h"

namespace diagsrunner {

namespace {

constexpr const char* kNoResults = "No Results.\n";

std::string noImmediateResult() {
  logTrace("DiagsRunner::ImmediateResults - Returning: No extended results");
  return kNoResults;
}

std::string noValidInstance() {
  logTrace("DiagsRunner::ImmediateResults  - No Valid Instance Found");
  return noImmediateResult();
}

/// Where one call reads and writes.
struct ReportContext {
  const boost::shared_ptr<NZELVOR20::ICIMNamespace>& source;  ///< holds the records
  const boost::shared_ptr<NZELVOR20::ICIMNamespace>& target;  ///< receives the copy
  const NZELVOR20::TOptionsMap& options;
  const VendorMessages& messages;
};

/// Waits for the record of the run, explains it and copies it to the target.
std::string reportRun(const std::string& testID, const RunKey& run, const ReportContext& context) {
  const bool isOfVendor = isVendorTest(testID);
  const auto recordClass = completionRecordClass(context.source, context.options);
  if (!recordClass) {
    return noValidInstance();
  }
  const auto record = findRecord(waitForRecords(recordClass, run.testName), run);
  if (!record) {
    return noValidInstance();
  }
  std::string verdict = verdictOf(record, run.testName);
  if (isOfVendor) {
    addVendorMessages(record, run.testName, context.messages);
  }
  NZELVOR20::TCIMCopy::CopyInstance(record, context.target);
  return verdict;
}

}  // namespace
}  // namespace diagsrunner

std::string DiagsRunner::ImmediateResults(std::string testID,
                                          boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  diagsrunner::logTrace("Entering DiagsRunner::ImmediateResults, testID is: ", testID);
  if (m_diagNS.count(testID) == 0) {
    diagsrunner::logTrace("DiagsRunner::ImmediateResults testID is not found in m_diagNS");
    return diagsrunner::kNoResults;
  }
  const NZELVOR20::TOptionsMap options = diagsrunner::familyOptions(m_diagNS[testID]);
  diagsrunner::logTrace("testID in ImmediateResults:", testID);
  diagsrunner::RunKey run;
  std::string deviceID;
  std::string elementName;
  if (!GetTestName(testID, run.testName, deviceID, elementName)) {
    diagsrunner::logTrace("DiagsRunner::ImmediateResults - GetTestName Failed");
    return diagsrunner::noImmediateResult();
  }
  const auto finished = m_finishedTests.find(testID);
  if (finished == m_finishedTests.end()) {
    return diagsrunner::kNoResults;
  }
  run.jobIdentifier = finished->second;
  try {
    return diagsrunner::reportRun(testID, run, {m_namespace, ns, options, m_vendorMessages});
  } catch (const NZELVOR20::TVORException&) {
    diagsrunner::logTrace("DiagsRunner::ImmediateResults caught Exception");
    return diagsrunner::kNoResults;
  }
}
