/* A provider that needs a library of its own package: its factory is that library's affair. */
#include "cmpi/cmpi.h"

CMPIInstanceMI* acme_help(CMPIStatus* status);

CMPI_EXTERN_C CMPIInstanceMI* Helped_Create_InstanceMI(const CMPIBroker* broker,
                                                       const CMPIContext* context,
                                                       CMPIStatus* status) {
  (void)broker;
  (void)context;
  return acme_help(status);
}
