#include "groups.h"

#define SLOT(name) CALL(c, CMPIObjectPathFT, ft, name)

/* Each of the four ways to ask, about the class of `path`. */
static void refuseAll(Checks* c, const CMPIObjectPathFT* ft, const CMPIObjectPath* path,
                      CMPIrc code, const char* qualifier) {
  isNoData(c, SLOT(getClassQualifier)(path, qualifier, fresh(c)));
  refused(c, code);
  isNoData(c, SLOT(getPropertyQualifier)(path, "U16", qualifier, fresh(c)));
  refused(c, code);
  isNoData(c, SLOT(getMethodQualifier)(path, "Turn", qualifier, fresh(c)));
  refused(c, code);
  isNoData(c, SLOT(getParameterQualifier)(path, "Turn", "Rounds", qualifier, fresh(c)));
  refused(c, code);
  isNoData(c, SLOT(getClassQualifier)(path, qualifier, NULL));
  isNoData(c, SLOT(getPropertyQualifier)(path, "U16", qualifier, NULL));
  isNoData(c, SLOT(getMethodQualifier)(path, "Turn", qualifier, NULL));
  isNoData(c, SLOT(getParameterQualifier)(path, "Turn", "Rounds", qualifier, NULL));
}

static void refuse(Checks* c, const CMPIObjectPathFT* ft, const CMPIObjectPath* bad) {
  refuseAll(c, ft, bad, CMPI_RC_ERR_INVALID_HANDLE, "Description");
}

static void checkMissing(Checks* c, const CMPIObjectPath* path) {
  const CMPIObjectPathFT* ft = path->ft;
  with(c, "an unknown element");
  isNoData(c, SLOT(getPropertyQualifier)(path, "Nowhere", "Units", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  isNoData(c, SLOT(getMethodQualifier)(path, "Nowhere", "Units", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  isNoData(c, SLOT(getParameterQualifier)(path, "Turn", "Nowhere", "In", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  isNoData(c, SLOT(getParameterQualifier)(path, "Nowhere", "Rounds", "In", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "a null element");
  isNoData(c, SLOT(getPropertyQualifier)(path, NULL, "Units", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  isNoData(c, SLOT(getMethodQualifier)(path, NULL, "Units", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  isNoData(c, SLOT(getParameterQualifier)(path, NULL, "Rounds", "In", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  isNoData(c, SLOT(getParameterQualifier)(path, "Turn", NULL, "In", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
}

void checkQualifiers(Checks* c) {
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", "conf_thing", NULL);
  const CMPIObjectPath* unknown = CMNewObjectPath(c->broker, "root/cimv2", "CONF_Undeclared", NULL);
  const CMPIObjectPathFT* ft = path->ft;
  isTextData(c, "A thing.", SLOT(getClassQualifier)(path, "description", fresh(c)));
  accepted(c);
  isTextData(c, "Rounds", SLOT(getPropertyQualifier)(path, "u16", "Units", fresh(c)));
  accepted(c);
  isNumberData(c, CMPI_boolean, 1, SLOT(getPropertyQualifier)(path, "Name", "Key", NULL));
  isTextData(c, "Turns it.", SLOT(getMethodQualifier)(path, "Turn", "Description", fresh(c)));
  accepted(c);
  isTextData(c, "How often.",
             SLOT(getParameterQualifier)(path, "Turn", "rounds", "Description", fresh(c)));
  accepted(c);
  checkMissing(c, path);
  with(c, "an unknown qualifier");
  refuseAll(c, ft, path, CMPI_RC_ERR_NO_SUCH_PROPERTY, "Nowhere");
  with(c, "a null qualifier");
  refuseAll(c, ft, path, CMPI_RC_ERR_INVALID_PARAMETER, NULL);
  with(c, "an undeclared class");
  refuseAll(c, ft, unknown, CMPI_RC_ERR_INVALID_CLASS, "Description");
  EACH_BAD_HANDLE(c, CMPIObjectPath, path, refuse);
}
