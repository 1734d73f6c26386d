/* What HelpedProvider.c needs. It refuses, with a code by which it is known to have been asked. */
#include "cmpi/cmpi.h"

CMPI_EXTERN_C CMPIInstanceMI* acme_help(CMPIStatus* status) {
  status->rc = CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED;
  return NULL;
}
