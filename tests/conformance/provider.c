/* The provider around the checks: the items, and the method that runs the checks. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "groups.h"
#include "items.h"

const CMPIBroker* conformanceBroker;

static CMPIStatus ItemCleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus ItemEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                        const CMPIResult* result, const CMPIObjectPath* path) {
  (void)mi, (void)ctx, (void)path;
  CMReturnObjectPath(result, pathOf(0));
  CMReturnObjectPath(result, pathOf(1));
  return itemsDone(result);
}

static CMPIStatus ItemEnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char** props) {
  (void)mi, (void)ctx, (void)path, (void)props;
  CMReturnInstance(result, instanceOf(0));
  CMReturnInstance(result, instanceOf(1));
  return itemsDone(result);
}

static CMPIStatus ItemGetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char** props) {
  const int item = itemOf(path);
  (void)mi, (void)ctx, (void)props;
  if (item < 0) CMReturnWithChars(conformanceBroker, CMPI_RC_ERR_NOT_FOUND, "no such item");
  CMReturnInstance(result, instanceOf(item));
  return itemsDone(result);
}

static CMPIStatus ItemCreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const CMPIInstance* inst) {
  (void)mi, (void)ctx, (void)path;
  CMReturnObjectPath(result, CMGetObjectPath(inst, NULL));
  return itemsDone(result);
}

/* Takes the number nine for U16, and nothing else. */
static CMPIStatus ItemModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const CMPIInstance* inst, const char** props) {
  const CMPIData number = CMGetProperty(inst, "U16", NULL);
  (void)mi, (void)ctx, (void)path;
  if (props == NULL || strcmp(props[0], "U16") != 0 || number.value.uint16 != 9) {
    CMReturnWithChars(conformanceBroker, CMPI_RC_ERR_INVALID_PARAMETER, "U16 alone, and nine");
  }
  return itemsDone(result);
}

static CMPIStatus ItemDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path) {
  (void)mi, (void)ctx;
  if (itemOf(path) < 0) CMReturnWithChars(conformanceBroker, CMPI_RC_ERR_NOT_FOUND, "no item");
  return itemsDone(result);
}

static CMPIStatus ItemExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                const CMPIResult* result, const CMPIObjectPath* path,
                                const char* query, const char* lang) {
  (void)query, (void)lang;
  return ItemEnumInstances(mi, ctx, result, path, NULL);
}

#if CMPI_VERSION >= 210
static CMPIStatus ItemEnumInstancesFiltered(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                            const CMPIResult* result, const CMPIObjectPath* path,
                                            const char** props, const char* lang, const char* query,
                                            CMPIStatus* st) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)props, (void)lang, (void)query, (void)st;
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}
#endif

static CMPIStatus ItemMethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx,
                                    CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus turn(const CMPIResult* result, const CMPIArgs* in, CMPIArgs* out) {
  const CMPIData rounds = CMGetArg(in, "Rounds", NULL);
  const CMPIUint32 answer = CMIsNullValue(rounds) ? 0 : 2 * rounds.value.uint32;
  CMAddArg(out, "Answer", "turned", CMPI_chars);
  CMReturnData(result, &answer, CMPI_uint32);
  return itemsDone(result);
}

static void addTexts(CMPIArgs* out, const char* name, const char* texts, size_t width,
                     unsigned count) {
  CMPIArray* array = CMNewArray(conformanceBroker, count, CMPI_string, NULL);
  unsigned at;
  for (at = 0; at < count; ++at) CMSetArrayElementAt(array, at, texts + at * width, CMPI_chars);
  CMAddArg(out, name, &array, CMPI_stringA);
}

/* What was checked and called, as the method's outputs: one text for each failure, and one for each
   table, which names it, its size and the bits of the slots that were called. */
static void report(const Checks* c, CMPIArgs* out) {
  enum { kWidth = 80 };
  char tables[kTablesAtMost][kWidth];
  unsigned at;
  for (at = 0; at < c->tableCount; ++at) {
    snprintf(tables[at], kWidth, "%s %u %llu", c->tables[at].table, (unsigned)c->tables[at].size,
             c->tables[at].called);
  }
  CMAddArg(out, "Done", &c->done, CMPI_uint32);
  CMAddArg(out, "Failed", &c->failed, CMPI_uint32);
  addTexts(out, "Failures", c->failures[0], kFailureSize,
           c->failed < kFailuresKept ? c->failed : kFailuresKept);
  addTexts(out, "Tables", tables[0], kWidth, c->tableCount);
}

/* Runs checks that another call, of this thread, is waiting with. */
static CMPIStatus deliverFor(const CMPIResult* result, const CMPIArgs* in, int isGood) {
  const CMPIData address = CMGetArg(in, "Checks", NULL);
  Checks* c = (Checks*)(size_t)address.value.uint64;
  const CMPIResult* own = c->result;
  c->result = result;
  deliver(c, isGood);
  c->result = own;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus run(Checks* c, const CMPIArgs* in, CMPIArgs* out) {
  const CMPIData name = CMGetArg(in, "Group", NULL);
  const CMPIData threads = CMGetArg(in, "Threads", NULL);
  const Group group = groupNamed(textOf(name.value.string));
  if (group == NULL) CMReturnWithChars(c->broker, CMPI_RC_ERR_METHOD_NOT_FOUND, "no such group");
  if (CMIsNullValue(threads)) {
    group(c);
  } else {
    checkOnThreads(c, threads.value.uint32);
  }
  report(c, out);
  return itemsDone(c->result);
}

static CMPIStatus ItemInvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* method, const CMPIArgs* in, CMPIArgs* out) {
  Checks* c;
  CMPIStatus st;
  (void)mi;
  if (strcmp(method, "Turn") == 0) return turn(result, in, out);
  if (strcmp(method, "Deliver") == 0) return deliverFor(result, in, 1);
  if (strcmp(method, "DeliverGarbage") == 0) return deliverFor(result, in, 0);
  c = calloc(1, sizeof *c);
  if (c == NULL) CMReturn(CMPI_RC_ERR_FAILED);
  c->broker = conformanceBroker;
  c->context = ctx;
  c->result = result;
  c->target = path;
  c->table = c->slot = c->given = "";
  st = run(c, in, out);
  free(c);
  return st;
}

static CMPIStatus ItemPropertyCleanup(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                      CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus ItemSetProperty(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* name, const CMPIData data) {
  (void)mi, (void)ctx, (void)path;
  if (strcmp(name, "U16") != 0 || data.type != CMPI_uint16 || data.value.uint16 != 9) {
    CMReturnWithChars(conformanceBroker, CMPI_RC_ERR_INVALID_PARAMETER, "U16 alone, and nine");
  }
  return itemsDone(result);
}

static CMPIStatus ItemGetProperty(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* name) {
  const CMPIUint16 nine = 9;
  (void)mi, (void)ctx, (void)path;
  if (strcmp(name, "U16") != 0) CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
  CMReturnData(result, &nine, CMPI_uint16);
  return itemsDone(result);
}

#if CMPI_VERSION >= 210
static CMPIStatus ItemSetPropertyWithOrigin(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                            const CMPIResult* result, CMPIObjectPath* path,
                                            const char* name, const CMPIData data,
                                            const char* origin) {
  (void)origin;
  return ItemSetProperty(mi, ctx, result, path, name, data);
}
#endif

#define STUBS(name)                                           \
  CMInstanceMIStub(Item, name, conformanceBroker, CMNoHook)   \
      CMMethodMIStub(Item, name, conformanceBroker, CMNoHook) \
          CMPropertyMIStub(Item, name, conformanceBroker, CMNoHook)
#define STUBS_OF(name) STUBS(name)
STUBS_OF(CONFORMANCE_PROVIDER)
