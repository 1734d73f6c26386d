#pragma once

#include <boost/shared_ptr.hpp>
#include <functional>
#include <string>

#include "framework/Options.h"
#include "framework/TCIMReference.h"
#include "framework/TCMPIInstance.h"

/// Invoking the methods of a diagnostic service.
namespace diagsrunner {

/// Makes `element` the one input parameter.
void setManagedElement(NZELVOR20::TParameterMap& parameters,
                       const NZELVOR20::TCIMReference& element);

/// Invokes `method` on `service`; `parameters` holds the output parameters afterwards. Throws what
/// the framework throws, and `std::runtime_error` when there is no service.
void invokeMethod(const boost::shared_ptr<NZELVOR20::TCMPIInstance>& service,
                  const std::string& method, NZELVOR20::TParameterMap& parameters);

/// Follows the job that a method has started.
using JobFollower = std::function<void(const NZELVOR20::TCIMReference& job)>;

/// Starts the diagnostic with the parameters prepared in `parameters` and hands the job to
/// `follow`. A service that starts no job is tried once more with the method that takes its
/// settings by value; if that starts none either, `result` says so. `TVORException` of the second
/// try is logged; everything else passes to the caller.
void runDiagnostic(const boost::shared_ptr<NZELVOR20::TCMPIInstance>& service,
                   const NZELVOR20::TCIMReference& element, NZELVOR20::TParameterMap& parameters,
                   std::string& result, const JobFollower& follow);

}  // namespace diagsrunner
