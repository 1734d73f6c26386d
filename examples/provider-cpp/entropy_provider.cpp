// The interfaces that the broker calls, and the factories by which it finds them.
#include "cmpi_objects.h"
#include "entropy_model.h"
#include "entropy_runs.h"

namespace {

const CMPIBroker* broker = nullptr;

EntropyRuns& runs() {
  static EntropyRuns all(broker);
  return all;
}
EntropyModel model() { return {broker, runs().states()}; }

std::string classOf(const CMPIObjectPath* path) { return textOf(CMGetClassName(path, nullptr)); }

void give(const CMPIResult* result, CMPIInstance* instance, const char** properties) {
  if (properties != nullptr) CMSetPropertyFilter(instance, properties, nullptr);
  CMReturnInstance(result, instance);
}
void giveName(const CMPIResult* result, CMPIInstance* instance) {
  CMReturnObjectPath(result, CMGetObjectPath(instance, nullptr));
}

// The instance interface.

CMPIStatus entropyEnumInstanceNames(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                                    const CMPIObjectPath* path) {
  return guarded(broker, [&] {
    for (CMPIInstance* instance : model().instances(classOf(path))) giveName(result, instance);
    CMReturnDone(result);
  });
}

CMPIStatus entropyEnumInstances(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                                const CMPIObjectPath* path, const char** properties) {
  return guarded(broker, [&] {
    for (CMPIInstance* instance : model().instances(classOf(path)))
      give(result, instance, properties);
    CMReturnDone(result);
  });
}

CMPIStatus entropyGetInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                              const CMPIObjectPath* path, const char** properties) {
  return guarded(broker, [&] {
    give(result, model().instance(path), properties);
    CMReturnDone(result);
  });
}

const CMPIStatus kNotSupported{CMPI_RC_ERR_NOT_SUPPORTED, nullptr};

CMPIStatus entropyCreateInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const CMPIInstance*) {
  return kNotSupported;
}
CMPIStatus entropyModifyInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const CMPIInstance*, const char**) {
  return kNotSupported;
}
CMPIStatus entropyDeleteInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*) {
  return kNotSupported;
}
CMPIStatus entropyExecQuery(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                            const CMPIObjectPath*, const char*, const char*) {
  return kNotSupported;
}

// The association interface: the associations of the model that name the given instance.

struct Filter {
  const char *association, *farClass, *role, *farRole;  // null for any
};

bool isA(const CMPIObjectPath* path, const char* className) {
  return className == nullptr || CMClassPathIsA(broker, path, className, nullptr) != 0;
}

/// Calls `found(association, path of the other end)` for each.
template <class Found>
void eachLink(const CMPIObjectPath* path, const Filter& filter, Found&& found) {
  const EntropyModel all = model();
  for (const std::string& className : EntropyModel::associationClasses()) {
    for (CMPIInstance* link : all.instances(className)) {
      const CMPIObjectPath* const linkPath = CMGetObjectPath(link, nullptr);
      if (!isA(linkPath, filter.association)) continue;
      for (CMPICount near = 0; near < 2; ++near) {
        CMPIString *role = nullptr, *farRole = nullptr;
        const CMPIData nearEnd = CMGetKeyAt(linkPath, near, &role, nullptr);
        const CMPIData farEnd = CMGetKeyAt(linkPath, 1 - near, &farRole, nullptr);
        const bool wanted = samePath(nearEnd.value.ref, path) &&
                            (!filter.role || sameName(filter.role, textOf(role))) &&
                            (!filter.farRole || sameName(filter.farRole, textOf(farRole))) &&
                            isA(farEnd.value.ref, filter.farClass);
        if (wanted) found(link, farEnd.value.ref);
      }
    }
  }
}

CMPIStatus entropyAssociators(CMPIAssociationMI*, const CMPIContext*, const CMPIResult* result,
                              const CMPIObjectPath* path, const char* association,
                              const char* farClass, const char* role, const char* farRole,
                              const char** properties) {
  return guarded(broker, [&] {
    eachLink(path, {association, farClass, role, farRole}, [&](CMPIInstance*, CMPIObjectPath* end) {
      give(result, model().instance(end), properties);
    });
    CMReturnDone(result);
  });
}

CMPIStatus entropyAssociatorNames(CMPIAssociationMI*, const CMPIContext*, const CMPIResult* result,
                                  const CMPIObjectPath* path, const char* association,
                                  const char* farClass, const char* role, const char* farRole) {
  return guarded(broker, [&] {
    eachLink(path, {association, farClass, role, farRole},
             [&](CMPIInstance*, CMPIObjectPath* end) { CMReturnObjectPath(result, end); });
    CMReturnDone(result);
  });
}

CMPIStatus entropyReferences(CMPIAssociationMI*, const CMPIContext*, const CMPIResult* result,
                             const CMPIObjectPath* path, const char* association, const char* role,
                             const char** properties) {
  return guarded(broker, [&] {
    eachLink(path, {association, nullptr, role, nullptr},
             [&](CMPIInstance* link, CMPIObjectPath*) { give(result, link, properties); });
    CMReturnDone(result);
  });
}

CMPIStatus entropyReferenceNames(CMPIAssociationMI*, const CMPIContext*, const CMPIResult* result,
                                 const CMPIObjectPath* path, const char* association,
                                 const char* role) {
  return guarded(broker, [&] {
    eachLink(path, {association, nullptr, role, nullptr},
             [&](CMPIInstance* link, CMPIObjectPath*) { giveName(result, link); });
    CMReturnDone(result);
  });
}

// The method interface.

/// RunDiagnostic and RunDiagnosticService: `Job` is set where a run was started, and only there.
CMPIUint32 runTest(const CMPIContext* context, CMPIArgs* out) {
  constexpr CMPIUint32 kSuccess = 0, kBusy = 6;
  const std::string id = runs().start(context);
  if (id.empty()) {
    // Whoever asked may not look at the number.
    CMLogMessage(broker, CMPI_SEV_WARNING, "ACME", "the source is under test already", nullptr);
    return kBusy;
  }
  CMPIObjectPath* job = model().jobPath(id);
  CMAddArg(out, "Job", &job, CMPI_ref);
  return kSuccess;
}

/// RequestStateChange of a job: 4 (Terminate) alone.
CMPIUint32 changeState(const CMPIObjectPath* job, const CMPIArgs* in) {
  constexpr CMPIUint32 kUnsupported = 1, kStarted = 4096, kInvalidTransition = 4097;
  const CMPIData state = CMGetArg(in, "RequestedState", nullptr);
  if (CMIsNullValue(state) || state.type != CMPI_uint16 || state.value.uint16 != 4)
    return kUnsupported;
  const CMPIData id = CMGetKey(job, "InstanceID", nullptr);
  return runs().stop(textOf(id.value.string)) ? kStarted : kInvalidTransition;
}

CMPIStatus entropyInvokeMethod(CMPIMethodMI*, const CMPIContext* context, const CMPIResult* result,
                               const CMPIObjectPath* path, const char* method, const CMPIArgs* in,
                               CMPIArgs* out) {
  return guarded(broker, [&] {
    const bool onTest = sameName(classOf(path), kTestClass);
    CMPIUint32 code = 0;
    if (onTest && (sameName(method, "RunDiagnostic") || sameName(method, "RunDiagnosticService"))) {
      code = runTest(context, out);
    } else if (!onTest && sameName(method, "RequestStateChange")) {
      code = changeState(path, in);
    } else {
      throw CmpiError(CMPI_RC_ERR_METHOD_NOT_FOUND, method);
    }
    CMReturnData(result, &code, CMPI_uint32);
    CMReturnDone(result);
  });
}

// The end: called once for each interface, and the runs have to end with the first.

template <class Mi>
CMPIStatus endRuns(Mi*, const CMPIContext*, CMPIBoolean) {
  return guarded(broker, [] { runs().endAll(); });
}
constexpr auto entropyCleanup = endRuns<CMPIInstanceMI>;
constexpr auto entropyAssociationCleanup = endRuns<CMPIAssociationMI>;
constexpr auto entropyMethodCleanup = endRuns<CMPIMethodMI>;

}  // namespace

CMInstanceMIStub(entropy, ACME_EntropyProvider, broker, CMNoHook)
    CMAssociationMIStub(entropy, ACME_EntropyProvider, broker, CMNoHook)
        CMMethodMIStub(entropy, ACME_EntropyProvider, broker, CMNoHook)
