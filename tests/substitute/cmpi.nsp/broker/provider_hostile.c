/* A provider that answers with what is no answer, and takes no notice when it is told. The
   namespace of the path says what it is up to. */
#include <string.h>

#define CMPI_VERSION 200
#include "cmpi/cmpi.h"

static const CMPIBroker* broker;
static void* foreign[8];

static int isAsked(const CMPIObjectPath* path, const char* what) {
  return strcmp(CMGetCharPtr(CMGetNameSpace(path, NULL)), what) == 0;
}

static CMPIObjectPath* fanPath(const char* cls, const char* name) {
  CMPIObjectPath* path = CMNewObjectPath(broker, "root/cimv2", cls, NULL);
  if (name != NULL) CMAddKey(path, "Name", name, CMPI_chars);
  return path;
}

static CMPIInstance* releasedInstance(void) {
  CMPIInstance* instance = CMClone(CMNewInstance(broker, fanPath("ACME_Fan", "x"), NULL), NULL);
  CMRelease(instance);
  return instance;
}

/* What the namespace of the path asks for, in place of an instance or a path; NULL is one of it. */
static void* garbageFor(const CMPIObjectPath* path) {
  if (isAsked(path, "foreign")) return foreign;
  if (isAsked(path, "released")) return releasedInstance();
  if (isAsked(path, "otherkind")) return CMNewArgs(broker, NULL);
  return NULL;
}

static int isGarbageAsked(const CMPIObjectPath* path) {
  return isAsked(path, "null") || isAsked(path, "foreign") || isAsked(path, "released") ||
         isAsked(path, "otherkind");
}

static CMPIStatus HostileCleanup(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                 CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus HostileEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                           const CMPIResult* result, const CMPIObjectPath* path) {
  (void)mi, (void)ctx;
  CMReturnObjectPath(result, fanPath("ACME_Fan", isAsked(path, "keyless") ? NULL : "good"));
  if (isGarbageAsked(path)) CMReturnObjectPath(result, garbageFor(path));
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus HostileEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const char** props) {
  const char* cls = isAsked(path, "undeclared") ? "ACME_Mystery" : "ACME_Fan";
  const char* name = isAsked(path, "keyless") ? NULL : "good";
  const CMPIUint16 number = 1;
  int at;
  (void)mi, (void)ctx, (void)props;
  for (at = 0; at < 50; ++at) {
    CMReturnInstance(result, CMNewInstance(broker, fanPath(cls, name), NULL));
    if (!isAsked(path, "deaf")) break;
  }
  if (isGarbageAsked(path)) CMReturnInstance(result, garbageFor(path));
  if (isAsked(path, "data")) CMReturnData(result, &number, CMPI_uint16);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus HostileGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char** props) {
  return HostileEnumInstances(mi, ctx, result, path, props);
}

static CMPIStatus HostileCreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path,
                                        const CMPIInstance* inst) {
  (void)inst;
  return HostileEnumInstanceNames(mi, ctx, result, path);
}

static CMPIStatus HostileModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path,
                                        const CMPIInstance* inst, const char** props) {
  (void)inst;
  return HostileEnumInstances(mi, ctx, result, path, props);
}

static CMPIStatus HostileDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path) {
  return HostileEnumInstanceNames(mi, ctx, result, path);
}

static CMPIStatus HostileExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* query, const char* lang) {
  (void)query, (void)lang;
  return HostileEnumInstances(mi, ctx, result, path, NULL);
}

CMInstanceMIStub(Hostile, Hostile, broker, CMNoHook)

    static CMPIStatus HostileAssociationCleanup(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                                CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus HostileReferences(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char* resultClass, const char* role, const char** props) {
  (void)mi, (void)resultClass, (void)role;
  return HostileEnumInstances(NULL, ctx, result, path, props);
}

static CMPIStatus HostileReferenceNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path,
                                        const char* resultClass, const char* role) {
  (void)mi, (void)resultClass, (void)role;
  return HostileEnumInstanceNames(NULL, ctx, result, path);
}

static CMPIStatus HostileAssociators(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char* assocClass, const char* resultClass,
                                     const char* role, const char* resultRole, const char** props) {
  (void)assocClass, (void)resultRole;
  return HostileReferences(mi, ctx, result, path, resultClass, role, props);
}

static CMPIStatus HostileAssociatorNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                         const CMPIResult* result, const CMPIObjectPath* path,
                                         const char* assocClass, const char* resultClass,
                                         const char* role, const char* resultRole) {
  (void)assocClass, (void)resultRole;
  return HostileReferenceNames(mi, ctx, result, path, resultClass, role);
}

CMAssociationMIStub(Hostile, Hostile, broker, CMNoHook)

    static CMPIStatus
    HostileMethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus HostilePropertyCleanup(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                         CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus HostileSetProperty(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char* name, const CMPIData data) {
  (void)mi, (void)ctx, (void)name, (void)data;
  if (isGarbageAsked(path)) CMReturnInstance(result, garbageFor(path));
  return CMReturnObjectPath(result, path);
}

static CMPIStatus HostileGetProperty(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char* name) {
  const CMPIString* string = (const CMPIString*)garbageFor(path);
  (void)mi, (void)ctx, (void)name;
  if (isGarbageAsked(path)) CMReturnData(result, &string, CMPI_string);
  CMReturn(CMPI_RC_OK);
}

CMPropertyMIStub(Hostile, Hostile, broker, CMNoHook)

    /* The method Spin is declared to answer with a number, and to take one. */
    static CMPIStatus HostileInvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx,
                                          const CMPIResult* result, const CMPIObjectPath* path,
                                          const char* method, const CMPIArgs* in, CMPIArgs* out) {
  const CMPIString* string = (const CMPIString*)garbageFor(path);
  (void)mi, (void)ctx, (void)method, (void)in;
  if (isGarbageAsked(path)) CMReturnData(result, &string, CMPI_string);
  if (isAsked(path, "text")) CMReturnData(result, "many", CMPI_chars);
  if (isAsked(path, "argument")) CMAddArg(out, "Rounds", "many", CMPI_chars);
  if (isAsked(path, "latin1")) CMAddArg(out, "caf\xE9", "caf\xE9", CMPI_chars);
  CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Hostile, Hostile, broker, CMNoHook)
