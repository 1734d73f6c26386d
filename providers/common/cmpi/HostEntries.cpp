#include "providers/common/cmpi/HostEntries.h"

#include "providers/common/cmpi/BrokerCall.h"
#include "providers/common/cmpi/Guard.h"

namespace providers {

namespace {

template <class Mi>
ProviderHost& hostOf(Mi* mi) {
  return *static_cast<ProviderHost*>(mi->hdl);
}

std::string orEmpty(const char* text) { return text ? text : std::string(); }

/// Makes the call object, does the work with it, and closes the result.
template <class Mi, class Work>
CMPIStatus answer(Mi* mi, const CMPIContext* context, const CMPIResult* result,
                  const CMPIObjectPath* path, Work&& work) noexcept {
  ProviderHost& host = hostOf(mi);
  return guarded(host.broker(), [&] {
    BrokerCall call(host, context, path);
    work(host.provider(), call);
    return result->ft->returnDone(result);
  });
}

void returnInstances(const BrokerCall& call, const CMPIResult* result,
                     const std::vector<Instance>& instances, const char** names) {
  for (const Instance& instance : instances) {
    check(result->ft->returnInstance(result, call.values().makeInstance(instance, names)),
          "taking an instance");
  }
}

void returnPath(const BrokerCall& call, const CMPIResult* result, const ObjectPath& path) {
  check(result->ft->returnObjectPath(result, call.values().makePath(path)), "taking a path");
}

template <class Mi>
CMPIStatus cleanup(Mi* mi, const CMPIContext*, CMPIBoolean terminating) noexcept {
  ProviderHost& host = hostOf(mi);
  return guarded(host.broker(), [&] { return host.cleanUp(terminating != 0); });
}

CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPIObjectPath* path) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    for (const Instance& instance : provider.enumerate(call.path().className, call))
      returnPath(call, result, instance.path());
  });
}

CMPIStatus enumerateInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char** names) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    returnInstances(call, result, provider.enumerate(call.path().className, call), names);
  });
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char** names) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    returnInstances(call, result, {provider.get(call.path())}, names);
  });
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    provider.remove(call.path());
  });
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext*, const CMPIResult*,
                          const CMPIObjectPath*, const CMPIInstance*) noexcept {
  return failure(hostOf(mi).broker(), CMPI_RC_ERR_NOT_SUPPORTED, "instances cannot be created");
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance,
                          const char** names) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    std::vector<std::string> listed;
    for (const char** name = names; name && *name; ++name) listed.emplace_back(*name);
    provider.modify(call.path(),
                    instance ? call.values().readInstance(instance).properties : Properties(),
                    names ? &listed : nullptr);
  });
}

CMPIStatus execQuery(CMPIInstanceMI* mi, const CMPIContext*, const CMPIResult*,
                     const CMPIObjectPath*, const char*, const char*) noexcept {
  return failure(hostOf(mi).broker(), CMPI_RC_ERR_NOT_SUPPORTED, "queries are not supported");
}

CMPIStatus associators(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char* association, const char* resultClass,
                       const char* role, const char* resultRole, const char** names) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    const AssociationQuery query{orEmpty(association), orEmpty(resultClass), orEmpty(role),
                                 orEmpty(resultRole)};
    std::vector<Instance> ends;
    for (const ObjectPath& end : provider.associators(call.path(), query, call))
      ends.push_back(provider.get(end));
    returnInstances(call, result, ends, names);
  });
}

CMPIStatus associatorNames(CMPIAssociationMI* mi, const CMPIContext* context,
                           const CMPIResult* result, const CMPIObjectPath* path,
                           const char* association, const char* resultClass, const char* role,
                           const char* resultRole) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    const AssociationQuery query{orEmpty(association), orEmpty(resultClass), orEmpty(role),
                                 orEmpty(resultRole)};
    for (const ObjectPath& end : provider.associators(call.path(), query, call))
      returnPath(call, result, end);
  });
}

CMPIStatus references(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                      const CMPIObjectPath* path, const char* association, const char* role,
                      const char** names) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    const AssociationQuery query{orEmpty(association), {}, orEmpty(role), {}};
    returnInstances(call, result, provider.references(call.path(), query, call), names);
  });
}

CMPIStatus referenceNames(CMPIAssociationMI* mi, const CMPIContext* context,
                          const CMPIResult* result, const CMPIObjectPath* path,
                          const char* association, const char* role) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    const AssociationQuery query{orEmpty(association), {}, orEmpty(role), {}};
    for (const Instance& instance : provider.references(call.path(), query, call))
      returnPath(call, result, instance.path());
  });
}

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* method, const CMPIArgs* in,
                        CMPIArgs* out) noexcept {
  return answer(mi, context, result, path, [&](DiagnosticProvider& provider, BrokerCall& call) {
    Properties arguments = call.values().readArguments(in);
    call.fetchSettings(arguments);
    const MethodResult outcome = provider.invoke(call.path(), orEmpty(method), arguments, call);
    if (out) call.values().addArguments(out, outcome.out);
    CMPIValue value{};
    value.uint32 = outcome.returnValue;
    check(result->ft->returnData(result, &value, CMPI_uint32), "taking the return value");
  });
}

}  // namespace

CMPIInstanceMIFT makeInstanceTable(const char* providerName) {
  return {CMPICurrentVersion,     CMPICurrentVersion, providerName, cleanup<CMPIInstanceMI>,
          enumerateInstanceNames, enumerateInstances, getInstance,  createInstance,
          modifyInstance,         deleteInstance,     execQuery};
}

CMPIAssociationMIFT makeAssociationTable(const char* providerName) {
  return {CMPICurrentVersion, CMPICurrentVersion, providerName, cleanup<CMPIAssociationMI>,
          associators,        associatorNames,    references,   referenceNames};
}

CMPIMethodMIFT makeMethodTable(const char* providerName) {
  return {CMPICurrentVersion, CMPICurrentVersion, providerName, cleanup<CMPIMethodMI>,
          invokeMethod};
}

}  // namespace providers
