#include <boost/pointer_cast.hpp>
#include <iostream>

#include "diagsrunner/DiagsRunner.h"
#include "execution/DiagnosticCall.h"
#include "execution/TestLocator.h"
#include "framework/CMPINSPInstanceRegistry.h"
#include "runner/CoreLog.h"
#include "runner/InstanceLookup.h"
#include "runner/TestIdentifier.h"
#include "runner/Text.h"

namespace diagsrunner {
namespace {

constexpr const char* kNoMatch = "No matching diagnostic test or device found.\n";

/// This test reports an error on machines that were sold without the cards it is for.
void writeCardNotice(const std::string& biosID, const std::string& testID) {
  if (biosID == "ko" && contains(testID, "ELXUCNA: NIC PHY LoopBackTest")) {
    std::cout << "Please ignore the error message if you do not have one of the following cards "
                 "installed: ZEL Dual-port 10Gb SFP+ or ZEL Dual-port 10Gb-T"
              << std::endl;
  }
}

/// The answer when the element of the test is gone; `erased` is the line for a former run that is
/// forgotten.
std::string answerElementGone(const std::string& testID, const char* erased,
                              std::map<std::string, std::string>& finishedTests) {
  logTrace("DiagsRunner::Execute looking for:", testID);
  if (finishedTests.erase(testID) != 0) {
    logTrace(erased);
  }
  logTrace("DiagsRunner::Execute returning no matching");
  return kNoMatch;
}

/// The answer when no association has the test; a former run is forgotten.
std::string answerNotFound(const std::string& testID,
                           std::map<std::string, std::string>& finishedTests) {
  logTrace("DiagsRunner::Execute looking for:", testID);
  if (finishedTests.erase(testID) != 0) {
    logTrace("erased test from map");
  }
  logTrace("returning no matching");
  return std::string(" ") + kNoMatch;
}

/// Finds the test by the two fields of its identifier that name the service and the element.
Location locateTest(const std::string& testID, TestLocator locator, ResolvedTest& test) {
  std::string serviceName;
  std::string deviceID;
  std::string elementName;
  if (!splitTestIdentifier(testID, serviceName, deviceID, elementName)) {
    return Location::notFound;
  }
  return locator.locate(testID, serviceName, deviceID, test);
}

}  // namespace
}  // namespace diagsrunner

std::string DiagsRunner::Execute(std::string testID, std::string,
                                 boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  using diagsrunner::Location;
  diagsrunner::logTrace("Entering DiagsRunner::Execute with testID = ", testID);
  diagsrunner::writeCardNotice(m_biosID, testID);
  const auto family = m_diagNS.find(testID);
  if (family == m_diagNS.end()) {
    diagsrunner::logTrace("DiagsRunner::Execute testID is not found in m_diagNS");
    return diagsrunner::kNoMatch;
  }
  const NZELVOR20::TOptionsMap options = diagsrunner::familyOptions(family->second);
  m_runFinished.set(false);
  std::string result;
  diagsrunner::ResolvedTest test;
  switch (diagsrunner::locateTest(testID, {m_testInstances, m_testIndex, options}, test)) {
    case Location::elementGoneWhenIndexed:
      return diagsrunner::answerElementGone(
          testID, "DiagsRunner::Execute erased test from finished map", m_finishedTests);
    case Location::elementGoneInSearch:
      return diagsrunner::answerElementGone(testID, "DiagsRunner::Execute erased test from map",
                                            m_finishedTests);
    case Location::notFound:
      result = diagsrunner::answerNotFound(testID, m_finishedTests);
      break;
    case Location::found:
      diagsrunner::setManagedElement(m_runParams, test.elementReference);
      m_runService = boost::dynamic_pointer_cast<NZELVOR20::TCMPIInstance>(test.service);
      diagsrunner::runDiagnostic(
          m_runService, test.elementReference, m_runParams, result,
          [&](const NZELVOR20::TCIMReference& job) { HandleConcrete(job, result, testID, ns); });
      break;
  }
  NZELVOR20::CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances();
  return result;
}
