#include "diagsrunner/DiagsRunner.h"
#include "execution/JobMonitor.h"
#include "execution/RecordAssociation.h"
#include "runner/CoreLog.h"
#include "runner/InstanceLookup.h"
#include "runner/TestIdentifier.h"

namespace diagsrunner {
namespace {

/// Pegasus tests tell their namespace along with the family.
NZELVOR20::TOptionsMap jobOptions(const std::string& testID, const NZELVOR20::TCIMValue& family,
                                  const std::map<std::string, NZELVOR20::TCIMValue>& namespaces) {
  NZELVOR20::TOptionsMap options = familyOptions(family);
  if (family == NZELVOR20::TCIMValue("pegasus")) {
    const auto found = namespaces.find(testID);
    options["nsp"] = found == namespaces.end() ? NZELVOR20::TCIMValue() : found->second;
  }
  return options;
}

/// What the record of this run will carry.
std::string concreteIdentifier(const std::string& testID, JobMonitor& job,
                               const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns,
                               const NZELVOR20::TOptionsMap& options) {
  std::string testName;
  std::string deviceID;
  std::string elementName;
  splitTestIdentifier(testID, testName, deviceID, elementName);
  if (hasRecordAssociation(testName)) {
    std::string key = findRecordKey(ns, deviceID, options);
    if (!key.empty()) {
      return key;
    }
  }
  return job.identifier();
}

}  // namespace
}  // namespace diagsrunner

void DiagsRunner::HandleConcrete(NZELVOR20::TCIMReference job, std::string& result,
                                 std::string testID,
                                 boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  diagsrunner::logTrace("DiagsRunner::HandleConcrete");
  const auto family = m_diagNS.find(testID);
  if (family == m_diagNS.end()) {
    diagsrunner::logTrace("DiagsRunner::HandleConcrete testID is not found in m_diagNS");
    return;
  }
  const NZELVOR20::TOptionsMap options =
      diagsrunner::jobOptions(testID, family->second, m_diagPegasusNS);
  diagsrunner::JobMonitor monitor(job, testID, options);
  monitor.follow();
  m_finishedTests.erase(testID);
  m_finishedTests[testID] = diagsrunner::concreteIdentifier(testID, monitor, m_namespace, options);
  result = ImmediateResults(testID, ns);
}
