/* The interfaces that the broker calls, and the factories by which it finds them. Only these are
   exported: ACME_ClockProvider_Create_InstanceMI and ACME_ClockProvider_Create_MethodMI. */
#include <string.h>

#include "clock_model.h"
#include "clock_run.h"

static const CMPIBroker* broker;

/* Every call: the work, then returnDone, then a status. The objects that were made are the broker's
   and go when the call has ended. */

typedef struct Request {
  const CMPIResult* result;
  const CMPIObjectPath* wanted; /* NULL for all */
  const char** properties;      /* NULL for all */
  int namesOnly;
  int found;
} Request;

static int answerWith(CMPIInstance* instance, void* user) {
  static const char* keys[] = {
      "InstanceID",        "Name", "DeviceID", "SystemName", "SystemCreationClassName",
      "CreationClassName", NULL};
  Request* const request = user;
  CMPIObjectPath* const path = CMGetObjectPath(instance, NULL);
  if (request->wanted != NULL && !samePath(path, request->wanted)) return 0;
  request->found = 1;
  if (request->namesOnly) {
    CMReturnObjectPath(request->result, path);
  } else {
    if (request->properties != NULL) CMSetPropertyFilter(instance, request->properties, keys);
    CMReturnInstance(request->result, instance);
  }
  return request->wanted != NULL;
}

static CMPIStatus answer(const CMPIObjectPath* path, Request* request) {
  const char* const className = CMGetCharPtr(CMGetClassName(path, NULL));
  if (!eachInstance(broker, className, answerWith, request))
    CMReturnWithChars(broker, CMPI_RC_ERR_INVALID_CLASS, className);
  if (request->wanted != NULL && !request->found)
    CMReturnWithChars(broker, CMPI_RC_ERR_NOT_FOUND, "there is no such instance");
  CMReturnDone(request->result);
  CMReturn(CMPI_RC_OK);
}

/* The instance interface. */

static CMPIStatus clockEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                         const CMPIResult* result, const CMPIObjectPath* path) {
  Request request = {result, NULL, NULL, 1, 0};
  (void)mi, (void)context;
  return answer(path, &request);
}

static CMPIStatus clockEnumInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char** properties) {
  Request request = {result, NULL, properties, 0, 0};
  (void)mi, (void)context;
  return answer(path, &request);
}

static CMPIStatus clockGetInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char** properties) {
  Request request = {result, path, properties, 0, 0};
  (void)mi, (void)context;
  return answer(path, &request);
}

static CMPIStatus clockCreateInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const CMPIInstance* instance) {
  (void)mi, (void)context, (void)result, (void)path, (void)instance;
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus clockModifyInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const CMPIInstance* instance, const char** properties) {
  (void)mi, (void)context, (void)result, (void)path, (void)instance, (void)properties;
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus clockDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path) {
  (void)mi, (void)context, (void)result, (void)path;
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus clockExecQuery(CMPIInstanceMI* mi, const CMPIContext* context,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const char* query, const char* language) {
  (void)mi, (void)context, (void)result, (void)path, (void)query, (void)language;
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

/* Called once for each interface; the runs have to end with the first. */
static CMPIStatus clockCleanup(CMPIInstanceMI* mi, const CMPIContext* context,
                               CMPIBoolean terminating) {
  (void)mi, (void)context, (void)terminating;
  endRuns();
  CMReturn(CMPI_RC_OK);
}

/* The method interface. */

static CMPIStatus clockMethodCleanup(CMPIMethodMI* mi, const CMPIContext* context,
                                     CMPIBoolean terminating) {
  (void)mi, (void)context, (void)terminating;
  endRuns();
  CMReturn(CMPI_RC_OK);
}

/* RunDiagnostic and RunDiagnosticService: `Job` is set where a run was started, and only there. */
static CMPIUint32 runTest(const CMPIContext* context, CMPIArgs* out) {
  char id[48];
  const CMPIUint32 code = startRun(context, id, sizeof id);
  if (code == 0) {
    CMPIObjectPath* job = jobPath(broker, id);
    CMAddArg(out, "Job", &job, CMPI_ref);
  }
  return code;
}

/* RequestStateChange of a job: 4 (Terminate) alone. */
static CMPIUint32 changeState(const CMPIObjectPath* job, const CMPIArgs* in) {
  const CMPIUint32 kNotSupported = 1, kStarted = 4096, kInvalidTransition = 4097;
  const CMPIData state = CMGetArg(in, "RequestedState", NULL);
  const CMPIData id = CMGetKey(job, "InstanceID", NULL);
  if (CMIsNullValue(state) || state.type != CMPI_uint16 || state.value.uint16 != 4)
    return kNotSupported;
  if (CMIsNullValue(id) || id.type != CMPI_string) return kInvalidTransition;
  return stopRun(CMGetCharPtr(id.value.string)) == 0 ? kStarted : kInvalidTransition;
}

static CMPIStatus clockInvokeMethod(CMPIMethodMI* mi, const CMPIContext* context,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char* method, const CMPIArgs* in, CMPIArgs* out) {
  const char* const className = CMGetCharPtr(CMGetClassName(path, NULL));
  CMPIUint32 code = 0;
  (void)mi;
  if (strcmp(className, kTestClass) == 0 && strncmp(method, "RunDiagnostic", 13) == 0) {
    code = runTest(context, out);
  } else if (strcmp(className, kJobClass) == 0 && strcmp(method, "RequestStateChange") == 0) {
    code = changeState(path, in);
  } else {
    CMReturnWithChars(broker, CMPI_RC_ERR_METHOD_NOT_FOUND, method);
  }
  CMReturnData(result, &code, CMPI_uint32);
  CMReturnDone(result);
  CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(clock, ACME_ClockProvider, broker, initRuns(broker))
    CMMethodMIStub(clock, ACME_ClockProvider, broker, initRuns(broker))
