/* Providers in plain C that behave and misbehave on demand; the namespace of the path says how. */
#include <stdlib.h>
#include <string.h>

#define CMPI_VERSION 200
#include "cmpi/cmpi.h"

static const CMPIBroker* broker;
static int cleanups;
static int methodCleanups;
static int genericCalls;

CMPI_EXTERN_C int cleanupsOfTest(void);
int cleanupsOfTest(void) { return cleanups; }

CMPI_EXTERN_C int methodCleanupsOfTest(void);
int methodCleanupsOfTest(void) { return methodCleanups; }

CMPI_EXTERN_C int genericCallsOfTest(void);
int genericCallsOfTest(void) { return genericCalls; }

static int isNamespace(const CMPIObjectPath* path, const char* ns) {
  return strcmp(CMGetCharPtr(CMGetNameSpace(path, NULL)), ns) == 0;
}

static CMPIInstance* makeFan(const CMPIObjectPath* like, const char* cls, const char* name,
                             CMPIUint16 speed) {
  const char* ns = CMGetCharPtr(CMGetNameSpace(like, NULL));
  CMPIObjectPath* path = CMNewObjectPath(broker, ns, cls, NULL);
  CMPIInstance* fan = CMNewInstance(broker, path, NULL);
  CMSetProperty(fan, "Name", name, CMPI_chars);
  CMSetProperty(fan, "Speed", &speed, CMPI_uint16);
  return fan;
}

/* Answers that no broker should take; how many of them were refused as bad handles. */
static CMPIUint16 countRefusals(const CMPIResult* result, const CMPIObjectPath* path) {
  CMPIUint16 refused = 0;
  char notAnObject[64] = {0};
  CMPIInstance* released = CMClone(makeFan(path, "ACME_Fan", "released", 0), NULL);
  CMRelease(released);
  if (CMReturnInstance(result, NULL).rc == CMPI_RC_ERR_INVALID_HANDLE) refused++;
  if (CMReturnInstance(result, (CMPIInstance*)(void*)notAnObject).rc ==
      CMPI_RC_ERR_INVALID_HANDLE) {
    refused++;
  }
  if (CMReturnInstance(result, (const CMPIInstance*)(const void*)path).rc ==
      CMPI_RC_ERR_INVALID_HANDLE) {
    refused++;
  }
  if (CMReturnInstance(result, released).rc == CMPI_RC_ERR_INVALID_HANDLE) refused++;
  return refused;
}

static CMPIStatus returnMisbehaving(const CMPIResult* result, const CMPIObjectPath* path) {
  CMPIInstance* fan = makeFan(path, "ACME_Fan", "first", 1);
  const char* ns = CMGetCharPtr(CMGetNameSpace(path, NULL));
  if (isNamespace(path, "test/error")) {
    CMReturnInstance(result, fan);
    CMReturnWithChars(broker, CMPI_RC_ERR_ACCESS_DENIED, "no more fans");
  }
  if (isNamespace(path, "test/nowhere")) CMReturn(CMPI_RC_ERR_NOT_FOUND);
  if (strncmp(ns, "test/status/", 12) == 0) CMReturn((CMPIrc)atoi(ns + 12));
  if (isNamespace(path, "test/badmessage")) {
    CMPIStatus status = {CMPI_RC_ERR_FAILED, NULL};
    status.msg = (CMPIString*)16;
    return status;
  }
  if (isNamespace(path, "test/endless")) {
    while (CMReturnInstance(result, fan).rc == CMPI_RC_OK) {
    }
    CMReturn(CMPI_RC_OK);
  }
  if (isNamespace(path, "test/afterdone")) {
    CMReturnInstance(result, fan);
    CMReturnDone(result);
    CMReturnInstance(result, fan);
    CMReturnDone(result);
    CMReturn(CMPI_RC_OK);
  }
  if (isNamespace(path, "test/garbage")) {
    return CMReturnInstance(result, makeFan(path, "ACME_Fan", "x", countRefusals(result, path)));
  }
  if (isNamespace(path, "test/foreign")) {
    CMReturnInstance(result, makeFan(path, "CIM_Other", "other", 1));
    CMReturnInstance(result, makeFan(path, "Undeclared", "undeclared", 1));
    CMReturnInstance(result, fan);
    CMReturn(CMPI_RC_OK);
  }
  if (isNamespace(path, "test/wrongkind")) return CMReturnObjectPath(result, path);
  if (isNamespace(path, "test/errorobject")) {
    CMPIError* error = CMNewCMPIError(broker, "ACME", "A1", "the first error", ErrorSevHigh,
                                      ErrorProbCauseUnknown, CMPI_RC_ERR_ACCESS_DENIED, NULL);
    return CMReturnError(result, error);
  }
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

/* One instance object is filled again and again, as real providers do. No `returnDone`. */
static CMPIStatus TestEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char** props) {
  CMPIInstance* fan;
  CMPIUint16 speed;
  (void)mi;
  (void)ctx;
  (void)props;
  if (!isNamespace(path, "root/cimv2")) return returnMisbehaving(result, path);
  fan = makeFan(path, "ACME_Fan", "fan1", 100);
  for (speed = 100; speed <= 300; speed = (CMPIUint16)(speed + 100)) {
    const char* names[] = {"fan1", "fan2", "fan3"};
    CMPIStatus status;
    CMSetProperty(fan, "Name", names[speed / 100 - 1], CMPI_chars);
    CMSetProperty(fan, "Speed", &speed, CMPI_uint16);
    status = CMReturnInstance(result, fan);
    if (status.rc != CMPI_RC_OK) return status;
  }
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus TestEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path) {
  CMPIObjectPath* name = CMNewObjectPath(broker, NULL, "ACME_Fan", NULL);
  (void)mi;
  (void)ctx;
  CMAddKey(name, "Name", "fan1", CMPI_chars);
  CMReturnObjectPath(result, name);
  if (isNamespace(path, "test/foreign")) {
    CMSetClassName(name, "CIM_Other");
    CMReturnObjectPath(result, name);
  }
  CMReturnDone(result);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus TestGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char** props) {
  CMPIData name = CMGetKey(path, "Name", NULL);
  (void)mi;
  (void)ctx;
  (void)props;
  if (CMIsNullValue(name)) CMReturnWithChars(broker, CMPI_RC_ERR_INVALID_PARAMETER, "no name");
  if (strcmp(CMGetCharPtr(name.value.string), "missing") == 0) CMReturn(CMPI_RC_ERR_NOT_FOUND);
  if (strcmp(CMGetCharPtr(name.value.string), "silent") == 0) CMReturn(CMPI_RC_OK);
  CMReturnInstance(result, makeFan(path, "ACME_Fan", CMGetCharPtr(name.value.string), 42));
  CMReturnDone(result);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus TestCreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const CMPIInstance* inst) {
  CMPIObjectPath* made = CMGetObjectPath(inst, NULL);
  (void)mi;
  (void)ctx;
  if (isNamespace(path, "test/silent")) CMReturn(CMPI_RC_OK);
  CMAddKey(made, "Name", "made", CMPI_chars);
  return CMReturnObjectPath(result, made);
}

static CMPIStatus TestModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const CMPIInstance* inst, const char** props) {
  (void)mi;
  (void)ctx;
  (void)result;
  (void)path;
  if (props == NULL || strcmp(props[0], "Speed") != 0 || props[1] != NULL) {
    CMReturnWithChars(broker, CMPI_RC_ERR_INVALID_PARAMETER, "Speed was expected");
  }
  if (CMGetProperty(inst, "Speed", NULL).value.uint16 != 900) CMReturn(CMPI_RC_ERR_FAILED);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus TestDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path) {
  (void)mi;
  (void)ctx;
  (void)path;
  CMReturnDone(result);
  CMReturnWithChars(broker, CMPI_RC_ERR_NOT_SUPPORTED, "fans stay");
}

static CMPIStatus TestExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                const CMPIResult* result, const CMPIObjectPath* path,
                                const char* query, const char* lang) {
  (void)mi;
  (void)ctx;
  return CMReturnInstance(result, makeFan(path, "ACME_Fan", query, (CMPIUint16)strlen(lang)));
}

static CMPIStatus TestCleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
  (void)mi;
  (void)ctx;
  if (terminating == 1) cleanups++;
  CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Test, Test, broker, CMNoHook)

    /* Associations: an instance that says which restrictions came as null. */
    static CMPIStatus
    returnRestrictions(const CMPIResult* result, const CMPIObjectPath* path, const char* cls,
                       const char* resultClass, const char* role, const char* resultRole) {
  char text[5] = "----";
  if (cls != NULL) text[0] = 'a';
  if (resultClass != NULL) text[1] = 'c';
  if (role != NULL) text[2] = 'r';
  if (resultRole != NULL) text[3] = 'o';
  CMReturnInstance(result, makeFan(path, "ACME_Fan", text, 1));
  CMReturnDone(result);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus TestAssociators(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* assocClass, const char* resultClass, const char* role,
                                  const char* resultRole, const char** props) {
  (void)mi;
  (void)ctx;
  (void)props;
  return returnRestrictions(result, path, assocClass, resultClass, role, resultRole);
}

static CMPIStatus TestAssociatorNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* assocClass, const char* resultClass,
                                      const char* role, const char* resultRole) {
  (void)mi;
  (void)ctx;
  (void)assocClass;
  (void)resultClass;
  (void)role;
  (void)resultRole;
  return CMReturnObjectPath(result, path);
}

static CMPIStatus TestReferences(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const char* resultClass, const char* role, const char** props) {
  (void)mi;
  (void)ctx;
  (void)props;
  return returnRestrictions(result, path, NULL, resultClass, role, NULL);
}

static CMPIStatus TestReferenceNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char* resultClass, const char* role) {
  (void)mi;
  (void)ctx;
  (void)resultClass;
  (void)role;
  return CMReturnObjectPath(result, path);
}

static CMPIStatus TestAssociationCleanup(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                         CMPIBoolean terminating) {
  (void)mi;
  (void)ctx;
  (void)terminating;
  CMReturn(CMPI_RC_NEVER_UNLOAD);
}

CMAssociationMIStub(Test, Test, broker, CMNoHook)

    /* Methods. */
    static CMPIStatus spin(const CMPIResult* result, const CMPIArgs* in, CMPIArgs* out) {
  CMPIStatus st;
  const CMPIData rounds = CMGetArg(in, "Rounds", &st);
  const CMPIUint32 twice = 2U * rounds.value.uint16;
  if (st.rc != CMPI_RC_OK) return st;
  CMAddArg(out, "Rounds", &twice, CMPI_uint32);
  CMAddArg(out, "Where", "here", CMPI_chars);
  return CMReturnData(result, &twice, CMPI_uint32);
}

static CMPIStatus callItself(const CMPIContext* ctx, const CMPIResult* result,
                             const CMPIObjectPath* path) {
  CMPIStatus st;
  CMPIEnumeration* all = CBEnumInstances(broker, ctx, path, NULL, &st);
  CMPIUint32 count = 0;
  if (st.rc != CMPI_RC_OK) return st;
  while (CMHasNext(all, NULL)) {
    CMGetNext(all, &st);
    if (st.rc == CMPI_RC_OK) count++;
  }
  return CMReturnData(result, &count, CMPI_uint32);
}

static CMPIStatus TestInvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* method, const CMPIArgs* in, CMPIArgs* out) {
  if (strcmp(method, "Spin") == 0) return spin(result, in, out);
  if (strcmp(method, "Note") == 0) return CMReturnData(result, (CMPIValue*)mi->hdl, CMPI_chars);
  if (strcmp(method, "GiveInstance") == 0) {
    return CMReturnInstance(result, makeFan(path, "ACME_Fan", "given", 1));
  }
  if (strcmp(method, "GivePath") == 0) return CMReturnObjectPath(result, path);
  if (strcmp(method, "GiveNothing") == 0) CMReturn(CMPI_RC_OK);
  if (strcmp(method, "CallItself") == 0) return callItself(ctx, result, path);
  CMAddArg(out, "Left", "behind", CMPI_chars);
  CMReturnWithChars(broker, CMPI_RC_ERR_METHOD_NOT_FOUND, method);
}

static CMPIStatus TestMethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx,
                                    CMPIBoolean terminating) {
  (void)ctx;
  (void)terminating;
  mi->hdl = NULL;
  methodCleanups++;
  CMReturnWithChars(broker, CMPI_RC_ERR_FAILED, "would not go");
}

static CMPIMethodMIFT methodTable = {CMPICurrentVersion, CMPICurrentVersion, "methodTest",
                                     TestMethodCleanup, TestInvokeMethod};
static CMPIMethodMI methodInterface = {NULL, &methodTable};

/* The generic factory knows two names alone and has one object for both, with a note in the memory
 * of the broker that asked first; the other names have factories of their own. */
CMPI_EXTERN_C CMPIMethodMI* _Generic_Create_MethodMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                     const char* name, CMPIStatus* st);
CMPIMethodMI* _Generic_Create_MethodMI(const CMPIBroker* b, const CMPIContext* ctx,
                                       const char* name, CMPIStatus* st) {
  (void)ctx;
  broker = b;
  genericCalls++;
  CMSetStatus(st, CMPI_RC_OK);
  if (strcmp(name, "Generic") != 0 && strcmp(name, "GenericToo") != 0) {
    CMSetStatus(st, CMPI_RC_ERR_NOT_FOUND);
    return NULL;
  }
  if (methodInterface.hdl == NULL) methodInterface.hdl = b->mft->cmpiStrDup(b, "of the first");
  return &methodInterface;
}

CMPI_EXTERN_C CMPIMethodMI* Test_Create_MethodMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                 CMPIStatus* st);
CMPIMethodMI* Test_Create_MethodMI(const CMPIBroker* b, const CMPIContext* ctx, CMPIStatus* st) {
  (void)ctx;
  (void)st; /* The factories of one edition never write it. */
  broker = b;
  return &methodInterface;
}

/* A factory that always fails, one that fails once, and one that asks the broker for itself. */
CMPI_EXTERN_C CMPIInstanceMI* Failing_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                        CMPIStatus* st);
CMPIInstanceMI* Failing_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                          CMPIStatus* st) {
  (void)ctx;
  CMSetStatusWithChars(b, st, CMPI_RC_ERR_ACCESS_DENIED, "no fans here");
  return NULL;
}

CMPI_EXTERN_C CMPIInstanceMI* Late_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                     CMPIStatus* st);
CMPIInstanceMI* Late_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                       CMPIStatus* st) {
  static int calls;
  if (calls++ == 0) {
    CMSetStatusWithChars(b, st, CMPI_RC_ERR_FAILED, "not yet");
    return NULL;
  }
  return Test_Create_InstanceMI(b, ctx, st);
}

static CMPIrc answerToSelfish;
CMPI_EXTERN_C int answerToSelfishFactory(void);
int answerToSelfishFactory(void) { return (int)answerToSelfish; }

CMPI_EXTERN_C CMPIInstanceMI* Selfish_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                        CMPIStatus* st);
CMPIInstanceMI* Selfish_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                          CMPIStatus* st) {
  CMPIStatus asked;
  CBEnumInstances(b, ctx, CMNewObjectPath(b, "root/cimv2", "ACME_Fan", NULL), NULL, &asked);
  answerToSelfish = asked.rc;
  return Test_Create_InstanceMI(b, ctx, st);
}

/* One that asks the broker and is content with any answer. */
CMPI_EXTERN_C CMPIInstanceMI* Asking_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                       CMPIStatus* st);
CMPIInstanceMI* Asking_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                         CMPIStatus* st) {
  CBEnumInstances(b, ctx, CMNewObjectPath(b, "root/cimv2", "ACME_Fan", NULL), NULL, NULL);
  return Test_Create_InstanceMI(b, ctx, st);
}

/* A table full of nulls whose author forgot its own edition, and no table at all. */
static CMPIInstanceMIFT emptyTable = {0, 100, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL};
static CMPIInstanceMI emptyInterface = {NULL, &emptyTable};
static CMPIInstanceMI tablelessInterface = {NULL, NULL};

CMPI_EXTERN_C CMPIInstanceMI* Empty_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                      CMPIStatus* st);
CMPIInstanceMI* Empty_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                        CMPIStatus* st) {
  (void)b;
  (void)ctx;
  (void)st;
  return &emptyInterface;
}

CMPI_EXTERN_C CMPIInstanceMI* Tableless_Create_InstanceMI(const CMPIBroker* b,
                                                          const CMPIContext* ctx, CMPIStatus* st);
CMPIInstanceMI* Tableless_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                            CMPIStatus* st) {
  (void)b;
  (void)ctx;
  (void)st;
  return &tablelessInterface;
}
