/* Providers that end the process in the middle of a call, as those do that take a fault of theirs
   for the end of the world: Leaver in an enumeration with 7, Founder in its factory with 8. */
#include <stdlib.h>

#define CMPI_VERSION 200
#include "cmpi/cmpi.h"

static const CMPIBroker* broker;

/* Leaves objects, a mark and an attachment of the calling thread behind. */
static void leave(const CMPIContext* ctx, int status) {
  CMNewString(broker, "left behind", NULL);
  CBAttachThread(broker, CBPrepareAttachThread(broker, ctx));
  broker->mft->mark(broker, NULL);
  CMClone(CMNewObjectPath(broker, "root/cimv2", "TEST_Leaver", NULL), NULL);
  exit(status);
}

static CMPIStatus cleanUp(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus enumerateNames(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                 const CMPIResult* result, const CMPIObjectPath* path) {
  (void)mi, (void)result, (void)path;
  leave(ctx, 7);
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus enumerate(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* path, const char** props) {
  (void)props;
  return enumerateNames(mi, ctx, result, path);
}

static CMPIInstanceMIFT table = {CMPICurrentVersion,
                                 CMPICurrentVersion,
                                 "instanceLeaver",
                                 cleanUp,
                                 enumerateNames,
                                 enumerate,
                                 NULL,
                                 NULL,
                                 NULL,
                                 NULL,
                                 NULL};
static CMPIInstanceMI instanceInterface = {NULL, &table};

CMPI_EXTERN_C CMPIInstanceMI* Leaver_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                       CMPIStatus* st);
CMPIInstanceMI* Leaver_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                         CMPIStatus* st) {
  (void)ctx, (void)st;
  broker = b;
  return &instanceInterface;
}

CMPI_EXTERN_C CMPIInstanceMI* Founder_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                                        CMPIStatus* st);
CMPIInstanceMI* Founder_Create_InstanceMI(const CMPIBroker* b, const CMPIContext* ctx,
                                          CMPIStatus* st) {
  (void)st;
  broker = b;
  leave(ctx, 8);
  return NULL;
}
