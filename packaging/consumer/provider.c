/* A provider that the headers let compile; nobody loads it. */
#include "cmpi/cmpi.h"

CMPI_EXTERN_C CMPIInstanceMI* Consumer_Create_InstanceMI(const CMPIBroker* broker,
                                                         const CMPIContext* context,
                                                         CMPIStatus* status) {
  (void)broker, (void)context;
  if (status != NULL) status->rc = CMPI_RC_ERR_NOT_SUPPORTED;
  return NULL;
}
