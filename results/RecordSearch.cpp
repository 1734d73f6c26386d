#include "results/RecordSearch.h"

#include <algorithm>

#include "framework/TAddToVectorCallback.h"
#include "runner/Handles.h"
#include "runner/Properties.h"
#include "runner/Text.h"

namespace diagsrunner {

using NZELVOR20::ICIMClass;
using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using NZELVOR20::TOptionsMap;

namespace {

bool belongsToRun(const InstanceHandle& record, const RunKey& key) {
  return record && !valueOrNull(record, "ManagedElementName").IsNull() &&
         !valueOrNull(record, "ServiceName").IsNull() &&
         contains(propertyText(record, "ServiceName"), key.testName) &&
         contains(propertyText(record, "InstanceID"), key.jobIdentifier);
}

}  // namespace

boost::shared_ptr<ICIMClass> completionRecordClass(const boost::shared_ptr<ICIMNamespace>& ns,
                                                   const TOptionsMap& options) {
  return required(ns, "namespace")->GetClass("CIM_DiagnosticCompletionRecord", options);
}

Records enumerateRecords(const boost::shared_ptr<ICIMClass>& recordClass,
                         const TOptionsMap& options) {
  Records records;
  if (recordClass) {
    recordClass->EnumerateInstances(NZELVOR20::TAddToVectorCallback<ICIMInstance>(records), true,
                                    options);
  }
  return records;
}

InstanceHandle findRecord(const Records& records, const RunKey& key) {
  const auto found =
      std::find_if(records.begin(), records.end(),
                   [&](const InstanceHandle& record) { return belongsToRun(record, key); });
  return found == records.end() ? InstanceHandle() : *found;
}

}  // namespace diagsrunner
