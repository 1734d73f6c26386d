#pragma once

#include <map>
#include <string>
#include <vector>

#include "diagsrunner/DiagsRunner.h"
#include "runner/ProcessRunner.h"

/// The runner's members, for tests.
struct DiagsRunnerAccess {
  using Namespace = boost::shared_ptr<NZELVOR20::ICIMNamespace>;
  using Texts = std::map<std::string, std::string>;
  using Values = std::map<std::string, NZELVOR20::TCIMValue>;
  using Instances = std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>;

  static Namespace& sharedAux(DiagsRunner& runner) { return runner.m_sharedAux; }
  static boost::weak_ptr<NZELVOR20::ICIMNamespace>& weakAux(DiagsRunner& runner) {
    return runner.m_weakAux;
  }
  static bool& flagAux(DiagsRunner& runner) { return runner.m_flagAux; }
  static std::string& biosID(DiagsRunner& runner) { return runner.m_biosID; }
  static SharedFlag& runFinished(DiagsRunner& runner) { return runner.m_runFinished; }
  static std::string& testList(DiagsRunner& runner) { return runner.m_testList; }
  static std::vector<std::string>& excludedTests(DiagsRunner& runner) {
    return runner.m_excludedTests;
  }
  static std::map<std::string, int>& testIndex(DiagsRunner& runner) { return runner.m_testIndex; }
  static Values& runParams(DiagsRunner& runner) { return runner.m_runParams; }
  static Texts& finishedTests(DiagsRunner& runner) { return runner.m_finishedTests; }
  static Namespace& theNamespace(DiagsRunner& runner) { return runner.m_namespace; }
  static boost::shared_ptr<NZELVOR20::TCMPIInstance>& runService(DiagsRunner& runner) {
    return runner.m_runService;
  }
  static VendorMessages& vendorMessages(DiagsRunner& runner) { return runner.m_vendorMessages; }
  static Instances& testInstances(DiagsRunner& runner) { return runner.m_testInstances; }
  static Values& diagNS(DiagsRunner& runner) { return runner.m_diagNS; }
  static Values& diagPegasusNS(DiagsRunner& runner) { return runner.m_diagPegasusNS; }

  /// Releases the process-wide runner and forgets that there ever was one.
  static void forgetRunner() {
    DiagsRunner::FreeDiagsRunner();
    diagsrunner::forgetProcessRunner();
  }
};
