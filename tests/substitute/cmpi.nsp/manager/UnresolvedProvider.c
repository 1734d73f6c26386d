/* A provider that needs a function which no library has. */
#include "cmpi/cmpi.h"

CMPIInstanceMI* acme_driver_of_the_fan(void);

CMPI_EXTERN_C CMPIInstanceMI* Unresolved_Create_InstanceMI(const CMPIBroker* broker,
                                                           const CMPIContext* context,
                                                           CMPIStatus* status) {
  (void)broker;
  (void)context;
  (void)status;
  return acme_driver_of_the_fan();
}
