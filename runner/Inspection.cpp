#include <iostream>
#include <utility>

#include "diagsrunner/DiagsRunner.h"
#include "framework/ICIMClass.h"
#include "runner/CoreLog.h"
#include "runner/PropertyLines.h"
#include "runner/TRunnerCollectClassFromProvider.h"
#include "runner/TRunnerCollectClassInstances.h"

namespace {

/// Product instances come from each provider by itself.
constexpr const char* kProductClass = "ZELSG_VORProduct";

boost::shared_ptr<NZELVOR20::ICIMClass> findClass(
    const std::string& className, const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  try {
    return ns ? ns->GetClass(className, {}) : boost::shared_ptr<NZELVOR20::ICIMClass>();
  } catch (...) {
    return {};
  }
}

void reportNotFound() { std::cout << "Class Not Found" << std::endl; }

}  // namespace

void DiagsRunner::EI(std::string className) { EI(std::move(className), m_namespace); }

void DiagsRunner::EI(std::string className, boost::shared_ptr<NZELVOR20::ICIMNamespace> ns) {
  diagsrunner::logTrace("DiagsRunner::EI");
  if (className == kProductClass && ns) {
    const TRunnerCollectClassFromProvider collect(className, m_flagAux);
    ns->EnumerateProviders(collect, {});
    if (!collect.isClassFound()) {
      reportNotFound();
    }
    return;
  }
  const boost::shared_ptr<NZELVOR20::ICIMClass> found = findClass(className, ns);
  if (!found) {
    reportNotFound();
    return;
  }
  found->EnumerateInstances(TRunnerCollectClassInstances(), true, {});
}

void DiagsRunner::EnumProperties(boost::shared_ptr<NZELVOR20::ICIMInstance> inst,
                                 std::string& out) {
  diagsrunner::logTrace("DiagsRunner::EnumerateProperties");
  diagsrunner::appendPropertyLines(inst, out);
}
