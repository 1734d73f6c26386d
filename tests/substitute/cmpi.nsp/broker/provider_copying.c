/* A provider that passes a copy of its broker, as wrappers in other languages do: they copy three
   of its members into a structure of their own and leave the others as they happen to be. */
#include <string.h>

#define CMPI_VERSION 200
#include "cmpi/cmpi.h"

static CMPIBroker copy;

static CMPIStatus CopyingCleanup(CMPIMethodMI* mi, const CMPIContext* ctx,
                                 CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

/* How many instances an upcall by way of the copy finds. */
static CMPIStatus countFans(const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* path) {
  CMPIStatus st;
  CMPIUint32 count = 0;
  CMPIEnumeration* fans = CBEnumInstances(&copy, ctx, path, NULL, &st);
  if (st.rc != CMPI_RC_OK) return st;
  while (CMHasNext(fans, NULL)) {
    CMGetNext(fans, NULL);
    count++;
  }
  return CMReturnData(result, &count, CMPI_uint32);
}

/* An instance that is made by way of the copy. */
static CMPIStatus makeFan(const CMPIResult* result) {
  CMPIStatus st;
  CMPIObjectPath* path = CMNewObjectPath(&copy, "root/cimv2", "ACME_Fan", &st);
  CMPIInstance* fan = st.rc == CMPI_RC_OK ? CMNewInstance(&copy, path, &st) : NULL;
  if (st.rc != CMPI_RC_OK) return st;
  CMSetProperty(fan, "Name", "copied", CMPI_chars);
  return CMReturnInstance(result, fan);
}

static CMPIStatus CopyingInvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* method, const CMPIArgs* in, CMPIArgs* out) {
  (void)mi, (void)in, (void)out;
  return strcmp(method, "Count") == 0 ? countFans(ctx, result, path) : makeFan(result);
}

static CMPIMethodMIFT table = {CMPICurrentVersion, CMPICurrentVersion, "methodCopying",
                               CopyingCleanup, CopyingInvokeMethod};
static CMPIMethodMI methodInterface = {NULL, &table};

CMPI_EXTERN_C CMPIMethodMI* Copying_Create_MethodMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                    CMPIStatus* st);
CMPIMethodMI* Copying_Create_MethodMI(const CMPIBroker* b, const CMPIContext* ctx, CMPIStatus* st) {
  (void)ctx, (void)st;
  memset(&copy, 0xA5, sizeof copy);
  copy.hdl = b->hdl;
  copy.bft = b->bft;
  copy.eft = b->eft;
  return &methodInterface;
}
