#include "execution/RecordAssociation.h"

#include <optional>
#include <vector>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/TAddToVectorCallback.h"
#include "runner/CoreLog.h"
#include "runner/Handles.h"
#include "runner/Properties.h"
#include "runner/Text.h"

namespace diagsrunner {

using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using NZELVOR20::TOptionsMap;

namespace {

std::vector<InstanceHandle> recordAssociations(const boost::shared_ptr<ICIMNamespace>& ns,
                                               const TOptionsMap& options) {
  std::vector<InstanceHandle> associations;
  const auto found = required(ns, "namespace")->GetClass("CIM_RecordAppliesToElement", options);
  if (found) {
    found->EnumerateInstances(NZELVOR20::TAddToVectorCallback<ICIMInstance>(associations), true,
                              options);
  }
  return associations;
}

/// The text between the first two double quotes.
std::optional<std::string> firstQuotedText(const std::string& path) {
  const std::size_t first = path.find('"');
  const std::size_t second = first == std::string::npos ? first : path.find('"', first + 1);
  if (second == std::string::npos) {
    return std::nullopt;
  }
  return path.substr(first + 1, second - first - 1);
}

/// The key of the record, when `association` ties a completion record to the element.
std::optional<std::string> recordKey(const InstanceHandle& association,
                                     const std::string& deviceID) {
  const std::string antecedent = propertyText(association, "Antecedent");
  const std::string dependent = propertyText(association, "Dependent");
  logTrace("DiagsRunner::HandleConcrete Antecedent = ", antecedent);
  logTrace("DiagsRunner::HandleConcrete Dependent = ", dependent);
  if (!contains(antecedent, "DiagnosticCompletionRecord")) {
    return std::nullopt;
  }
  const std::string quotedDeviceID = "\"" + deviceID + "\"";
  logTrace("matchDeviceID: ", quotedDeviceID);
  return contains(dependent, quotedDeviceID) ? firstQuotedText(antecedent) : std::nullopt;
}

}  // namespace

bool hasRecordVendor(const std::string& testName) {
  return contains(testName, "Fusion-io:") || contains(testName, "FIO:") ||
         contains(testName, "ZEL:");
}

bool hasRecordAssociation(const std::string& testName) {
  return hasRecordVendor(testName) && contains(testName, ":diag service");
}

std::string findRecordKey(const boost::shared_ptr<ICIMNamespace>& ns, const std::string& deviceID,
                          const TOptionsMap& options) {
  std::string key;
  for (const InstanceHandle& association : recordAssociations(ns, options)) {
    if (association) {
      key = recordKey(association, deviceID).value_or(key);
    }
  }
  if (key.empty()) {
    logTrace("DiagsRunner::HandleConcrete concreteJobID not found for Fusion-io diags.");
  }
  return key;
}

}  // namespace diagsrunner
