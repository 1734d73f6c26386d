#include "groups.h"

/* This broker has no query engine: it says so, and hands out no object whose table could be called.
   The slots that take such an object have nothing to take. */
#define SLOT(name) CALL(c, CMPIBrokerEncFT, ft, name)

void checkQueries(Checks* c) {
  const CMPIBrokerEncFT* ft = c->broker->eft;
  const char* query = "SELECT * FROM CONF_Thing";
  CMPIArray* projection = (CMPIArray*)(void*)c;
  isNothing(c, SLOT(newSelectExp)(c->broker, query, "WQL", &projection, fresh(c)));
  refused(c, CMPI_RC_ERR_NOT_SUPPORTED);
  isTrue(c, "there is no projection", projection == NULL);
  isNothing(c, SLOT(newSelectExp)(c->broker, NULL, NULL, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_NOT_SUPPORTED);
  isNothing(c, SLOT(newSelectExp)(c->broker, query, "WQL", NULL, NULL));
  isTrue(c, "the capabilities leave queries out",
         (c->broker->bft->brokerCapabilities & 0x30U) == 0);
  with(c, "a bad broker");
  isNothing(c, SLOT(newSelectExp)(NULL, query, "WQL", NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  with(c, "");
#if CMPI_VERSION >= 200
  CALL(c, CMPIBrokerMemFT, c->broker->mft, freeSelectExp)(c->broker, NULL);
  CALL(c, CMPIBrokerMemFT, c->broker->mft, freeSelectExp)(c->broker, foreignHandle());
#endif
#if CMPI_VERSION >= 210
  isNothing(c, SLOT(newEnumerationFilter)(c->broker, "DMTF:FQL", "U16 = 1", fresh(c)));
  refused(c, CMPI_RC_ERR_NOT_SUPPORTED);
  isNothing(c, SLOT(newEnumerationFilter)(foreignHandle(), NULL, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newEnumerationFilter)(c->broker, NULL, NULL, NULL));
#endif
}
