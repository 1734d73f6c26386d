#include "execution/DiagnosticCall.h"

#include "framework/TVORException.h"
#include "runner/CoreLog.h"
#include "runner/Handles.h"

namespace diagsrunner {

using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TCMPIInstance;
using NZELVOR20::TParameterMap;

namespace {

/// The job is the first output parameter, whatever its name. False when there is none.
bool followJob(const TParameterMap& parameters, const JobFollower& follow) {
  if (parameters.empty()) {
    return false;
  }
  follow(parameters.begin()->second.ToReference());
  return true;
}

}  // namespace

void setManagedElement(TParameterMap& parameters, const TCIMReference& element) {
  parameters.clear();
  parameters.emplace("ManagedElement", TCIMValue(element));
}

void invokeMethod(const boost::shared_ptr<TCMPIInstance>& service, const std::string& method,
                  TParameterMap& parameters) {
  required(service, "CMPI instance of the diagnostic service")
      ->InvokeMethod(method, parameters, {});
}

void runDiagnostic(const boost::shared_ptr<TCMPIInstance>& service, const TCIMReference& element,
                   TParameterMap& parameters, std::string& result, const JobFollower& follow) {
  invokeMethod(service, "RunDiagnostic", parameters);
  if (followJob(parameters, follow)) {
    return;
  }
  try {
    logTrace(
        "DiagsRunner::Execute - No Concrete Job Found for RunDiagnostic, attempting "
        "RunDiagnosticService");
    setManagedElement(parameters, element);
    invokeMethod(service, "RunDiagnosticService", parameters);
    if (!followJob(parameters, follow)) {
      result += "No Status\n";
    }
  } catch (const NZELVOR20::TVORException&) {
    logTrace("DiagsRunner::Execute - exception from RunDiagnosticService detected");
  }
}

}  // namespace diagsrunner
