#include "runner/AssociationWalk.h"

#include "exclusion/ServiceExclusion.h"
#include "framework/ICIMClass.h"
#include "framework/TAddToVectorCallback.h"
#include "framework/TVORException.h"
#include "runner/CoreLog.h"
#include "runner/Handles.h"
#include "runner/InstanceLookup.h"
#include "runner/Properties.h"
#include "runner/TestIdentifier.h"

namespace diagsrunner {

using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TOptionsMap;
using NZELVOR20::TVORException;

namespace {

/// The log lines of fetching one end of an association.
struct EndMessages {
  const char* frameworkFailure;
  const char* otherFailure;
  const char* givenUp;
};

constexpr EndMessages kServiceMessages{
    "DiagsRunner::GetCIMData, caught vor exception when get instRef1 instance",
    "DiagsRunner::GetCIMData, caught exception when get instRef1 instance",
    "DiagsRunner::GetCIMData, bGetResult1 false, caught exception when get instRef1 instance"};

/// The last text names the first reference; log readers know it that way.
constexpr EndMessages kElementMessages{
    "DiagsRunner::GetCIMData, caught vor exception when get instRef2 instance",
    "DiagsRunner::GetCIMData, caught exception when get instRef2 instance",
    "DiagsRunner::GetCIMData, bGetResult2 false, caught exception when get instRef1 instance"};

InstanceHandle fetchDirectly(const TCIMReference& reference, ClassHandle& endClass,
                             const TOptionsMap& options, const EndMessages& messages) {
  try {
    endClass = reference.GetClass();
    return required(fetchInstance(reference, endClass, {options, options}), "instance");
  } catch (const TVORException&) {
    logError(messages.frameworkFailure);
  } catch (...) {
    logError(messages.otherFailure);
  }
  return {};
}

InstanceHandle fetchByUpcall(const TCIMReference& reference, ClassHandle& endClass,
                             const EndMessages& messages) {
  try {
    const TOptionsMap plugin = familyOptions("plugin");
    return required(fetchThroughUpcall(reference, endClass, {plugin, plugin}), "instance");
  } catch (...) {
    logError(messages.givenUp);
  }
  return {};
}

/// Empty, and logged, when both ways fail.
InstanceHandle fetchEnd(const TCIMReference& reference, const TOptionsMap& options,
                        const EndMessages& messages) {
  ClassHandle endClass;
  InstanceHandle instance = fetchDirectly(reference, endClass, options, messages);
  if (!instance) {
    instance = fetchByUpcall(reference, endClass, messages);
  }
  return instance;
}

}  // namespace

struct AssociationWalk::Ends {
  TCIMReference service;
  TCIMReference element;
};

AssociationWalk::AssociationWalk(const AssociationQuery& query,
                                 const std::vector<std::string>& excludedTests,
                                 std::map<std::string, TCIMValue>& pegasusNamespaces,
                                 std::vector<std::string>& ids)
    : m_query(query),
      m_options(familyOptions(query.family)),
      m_isPegasus(query.associationClass == kAvailableDiagnosticService &&
                  query.family == TCIMValue("pegasus")),
      m_excludedTests(excludedTests),
      m_pegasusNamespaces(pegasusNamespaces),
      m_ids(ids) {}

bool AssociationWalk::collect(const boost::shared_ptr<ICIMNamespace>& ns, Instances& associations) {
  ClassHandle associationClass;
  try {
    associationClass =
        required(required(ns, "namespace")->GetClass(m_query.associationClass, m_options),
                 "class " + m_query.associationClass);
  } catch (...) {
    logError("DiagsRunner::GetCIMData, caught exception when get class");
    return false;
  }
  associationClass->EnumerateInstances(NZELVOR20::TAddToVectorCallback<ICIMInstance>(associations),
                                       true, m_options);
  return true;
}

void AssociationWalk::visit(const InstanceHandle& association) {
  const Ends ends = readEnds(association);
  const InstanceHandle service = fetchEnd(ends.service, m_options, kServiceMessages);
  if (!service) {
    return;
  }
  const InstanceHandle element = fetchEnd(ends.element, m_options, kElementMessages);
  if (!element) {
    return;
  }
  if (m_query.isTestEnumeration && isServiceExcluded(service, m_excludedTests, m_options)) {
    return;
  }
  nameTest(association, service, element);
}

AssociationWalk::Ends AssociationWalk::readEnds(const InstanceHandle& association) const {
  const PropertyHandle service =
      requiredProperty(association, m_query.serviceRole.c_str(), m_options);
  TCIMReference serviceReference = service->GetValue(m_options).ToReference();
  const PropertyHandle element =
      requiredProperty(association, m_query.elementRole.c_str(), m_options);
  TCIMReference elementReference = element->GetValue(m_options).ToReference();
  logTrace("DiagsRunner::GetCIMData:Property 1: ", m_query.serviceRole, "=", service->ToString());
  logTrace("DiagsRunner::GetCIMData:Property 2: ", m_query.elementRole, "=", element->ToString());
  return {std::move(serviceReference), std::move(elementReference)};
}

void AssociationWalk::nameTest(const InstanceHandle& association, const InstanceHandle& service,
                               const InstanceHandle& element) {
  try {
    const std::string serviceName = propertyText(service, "Name", m_options);
    const std::string deviceID = propertyText(element, "DeviceID", m_options);
    std::string identifier =
        joinTestIdentifier(serviceName, deviceID, propertyText(element, "ElementName", m_options));
    if (m_isPegasus) {
      registerPegasusTest(association, identifier);
    }
    m_ids.push_back(std::move(identifier));
  } catch (const TVORException&) {
    logError("DiagsRunner::GetCIMData, vor caught exception when diagnostic ");
  } catch (...) {
    logError("DiagsRunner::GetCIMData, caught exception when diagnostic");
  }
}

void AssociationWalk::registerPegasusTest(const InstanceHandle& association,
                                          const std::string& identifier) {
  const std::string pegasusNamespace = association->GetPegasusNSPStr();
  m_pegasusNamespaces.emplace(identifier, TCIMValue(pegasusNamespace));
  logTrace("DiagsRunner::GetCIMData m_diagPegasusNS.insert testItemID=", identifier);
  logTrace("DiagsRunner::GetCIMData m_diagPegasusNS.insert testItemNspStr=", pegasusNamespace);
}

}  // namespace diagsrunner
