/* A provider whose methods answer in ways that their declarations do not foresee. */
#include <string.h>

#define CMPI_VERSION 200
#include "cmpi/cmpi.h"

static const CMPIBroker* broker;

static CMPIStatus AnsweringMethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx,
                                         CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus returnNumber(const CMPIResult* result, CMPIUint32 number) {
  return CMReturnData(result, &number, CMPI_uint32);
}

/* The job as a path object, as most providers return it. */
static void addJob(CMPIArgs* out) {
  CMPIObjectPath* job = CMNewObjectPath(broker, "root/cimv2", "ACME_Fan", NULL);
  CMAddKey(job, "Name", "job", CMPI_chars);
  CMAddArg(out, "Job", &job, CMPI_ref);
}

static CMPIStatus run(const char* how, const CMPIResult* result, CMPIArgs* out) {
  if (strcmp(how, "text returned") == 0) {
    addJob(out);
    return CMReturnData(result, (const CMPIValue*)"", CMPI_chars);
  }
  if (strcmp(how, "text for a number") == 0) {
    addJob(out);
    CMAddArg(out, "Count", "many", CMPI_chars);
    return returnNumber(result, 4096);
  }
  if (strcmp(how, "several values") == 0) {
    returnNumber(result, 1);
    return returnNumber(result, 2);
  }
  CMAddArg(out, "Job", how, CMPI_chars);
  return returnNumber(result, 4096);
}

/* What it is asked about, under the name that its caller spelt. */
static CMPIStatus echo(const CMPIResult* result, const CMPIObjectPath* path, CMPIArgs* out) {
  CMAddArg(out, "Where", &path, CMPI_ref);
  return CMReturnInstance(result, CMNewInstance(broker, path, NULL));
}

static CMPIStatus AnsweringInvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path,
                                        const char* method, const CMPIArgs* in, CMPIArgs* out) {
  const CMPIData how = CMGetArg(in, "How", NULL);
  (void)mi, (void)ctx;
  if (strcmp(method, "Echo") == 0) return echo(result, path, out);
  return run(CMGetCharPtr(how.value.string), result, out);
}

CMMethodMIStub(Answering, Answering, broker, CMNoHook)
