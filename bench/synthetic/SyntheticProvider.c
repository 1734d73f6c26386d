/* A provider of as many instances of BENCH_Record as DIAGS_BENCH_INSTANCES says, made anew for
   every call as a provider makes them that reads a device: 11 properties each, 4 of them texts. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "cmpi/cmpi.h"

static const CMPIBroker* gBroker;

static const char kClassName[] = "BENCH_Record";

static unsigned long instanceCount(void) {
  const char* count = getenv("DIAGS_BENCH_INSTANCES");
  return count == NULL ? 0 : strtoul(count, NULL, 10);
}

/* Whether it gives each object back once it is returned, as a provider of many instances should. */
static int releasesItsObjects(void) { return getenv("DIAGS_BENCH_KEEP") == NULL; }

struct Name {
  char text[32];
};

static struct Name nameOf(unsigned long number) {
  struct Name name;
  snprintf(name.text, sizeof name.text, "record-%07lu", number);
  return name;
}

static CMPIObjectPath* pathOf(const char* nameSpace, const char* name) {
  CMPIObjectPath* path = CMNewObjectPath(gBroker, nameSpace, kClassName, NULL);
  CMAddKey(path, "Name", name, CMPI_chars);
  return path;
}

static void setNumbers(CMPIInstance* instance, unsigned long number) {
  CMPIUint16 state = (CMPIUint16)(number % 12);
  CMPIUint32 code = (CMPIUint32)number;
  CMPIUint64 bytes = (CMPIUint64)number * 4096;
  CMPISint32 offset = -(CMPISint32)number;
  CMPIReal64 seconds = (CMPIReal64)number / 8;
  CMPIBoolean passed = (CMPIBoolean)(number % 2);
  CMSetProperty(instance, "State", &state, CMPI_uint16);
  CMSetProperty(instance, "Code", &code, CMPI_uint32);
  CMSetProperty(instance, "Bytes", &bytes, CMPI_uint64);
  CMSetProperty(instance, "Offset", &offset, CMPI_sint32);
  CMSetProperty(instance, "Seconds", &seconds, CMPI_real64);
  CMSetProperty(instance, "Passed", &passed, CMPI_boolean);
}

static CMPIStatus returnInstance(const CMPIResult* result, const char* nameSpace,
                                 unsigned long number, int releases) {
  struct Name name = nameOf(number);
  CMPIObjectPath* path = pathOf(nameSpace, name.text);
  CMPIInstance* instance = CMNewInstance(gBroker, path, NULL);
  CMPIDateTime* time =
      CMNewDateTimeFromBinary(gBroker, (CMPIUint64)number * 1000000, CMPI_false, NULL);
  CMPIStatus status;
  CMSetProperty(instance, "Name", name.text, CMPI_chars);
  CMSetProperty(instance, "Caption", "one record of many", CMPI_chars);
  CMSetProperty(instance, "Device", "/devices/pci0000:00/0000:00:1f.2", CMPI_chars);
  CMSetProperty(instance, "Message", "the transfer was repeated and then went through", CMPI_chars);
  setNumbers(instance, number);
  CMSetProperty(instance, "Time", &time, CMPI_dateTime);
  status = CMReturnInstance(result, instance);
  if (!releases) return status;
  CMRelease(time);
  CMRelease(instance);
  CMRelease(path);
  return status;
}

static CMPIStatus RecordsCleanup(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                 CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus RecordsEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                           const CMPIResult* result, const CMPIObjectPath* path) {
  const char* nameSpace = CMGetCharPtr(CMGetNameSpace(path, NULL));
  const unsigned long count = instanceCount();
  const int releases = releasesItsObjects();
  (void)mi, (void)ctx;
  for (unsigned long number = 0; number < count; ++number) {
    struct Name name = nameOf(number);
    CMPIObjectPath* own = pathOf(nameSpace, name.text);
    CMPIStatus status = CMReturnObjectPath(result, own);
    if (releases) CMRelease(own);
    if (status.rc != CMPI_RC_OK) return status;
  }
  CMReturnDone(result);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus RecordsEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const char** properties) {
  const char* nameSpace = CMGetCharPtr(CMGetNameSpace(path, NULL));
  const unsigned long count = instanceCount();
  const int releases = releasesItsObjects();
  (void)mi, (void)ctx, (void)properties;
  for (unsigned long number = 0; number < count; ++number) {
    CMPIStatus status = returnInstance(result, nameSpace, number, releases);
    if (status.rc != CMPI_RC_OK) return status;
  }
  CMReturnDone(result);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus RecordsGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char** properties) {
  CMPIData key = CMGetKey(path, "Name", NULL);
  const char* nameSpace = CMGetCharPtr(CMGetNameSpace(path, NULL));
  unsigned long number = 0;
  (void)mi, (void)ctx, (void)properties;
  if (key.type != CMPI_string || sscanf(CMGetCharPtr(key.value.string), "record-%lu", &number) != 1)
    CMReturn(CMPI_RC_ERR_NOT_FOUND);
  returnInstance(result, nameSpace, number, 1);
  CMReturnDone(result);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus RecordsCreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path,
                                        const CMPIInstance* instance) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)instance;
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus RecordsModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path,
                                        const CMPIInstance* instance, const char** properties) {
  (void)properties;
  return RecordsCreateInstance(mi, ctx, result, path, instance);
}

static CMPIStatus RecordsDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path) {
  return RecordsCreateInstance(mi, ctx, result, path, NULL);
}

static CMPIStatus RecordsExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* query, const char* language) {
  (void)query, (void)language;
  return RecordsCreateInstance(mi, ctx, result, path, NULL);
}

#if CMPI_VERSION >= 210
static CMPIStatus RecordsEnumInstancesFiltered(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                               const CMPIResult* result, const CMPIObjectPath* path,
                                               const CMPIPropertyList* properties) {
  (void)properties;
  return RecordsCreateInstance(mi, ctx, result, path, NULL);
}
#endif

CMInstanceMIStub(Records, Bench_Records, gBroker, CMNoHook)
