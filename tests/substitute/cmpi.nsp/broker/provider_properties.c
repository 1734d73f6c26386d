/* A provider with the property interface alone, which keeps one number and says what it got. */
#include <string.h>

#define CMPI_VERSION 200
#include "cmpi/cmpi.h"

static const CMPIBroker* broker;
static CMPIUint16 speed = 5;

static CMPIStatus PropsPropertyCleanup(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                       CMPIBoolean terminating) {
  (void)mi;
  (void)ctx;
  (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus PropsSetProperty(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* name, const CMPIData data) {
  (void)mi;
  (void)ctx;
  (void)result;
  (void)path;
  if (strcmp(name, "Speed") != 0) CMReturnWithChars(broker, CMPI_RC_ERR_NO_SUCH_PROPERTY, name);
  if (data.type != CMPI_uint16) CMReturnWithChars(broker, CMPI_RC_ERR_TYPE_MISMATCH, name);
  if (CMIsNullValue(data)) CMReturnWithChars(broker, CMPI_RC_ERR_INVALID_PARAMETER, "no speed");
  speed = data.value.uint16;
  CMReturn(CMPI_RC_OK);
}

/* Speed comes in a wider type than it is declared with; Tags and Child as nothing and as null. */
static CMPIStatus PropsGetProperty(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* name) {
  const CMPIUint64 wide = speed;
  (void)mi;
  (void)ctx;
  (void)path;
  if (strcmp(name, "Speed") == 0) CMReturnData(result, &wide, CMPI_uint64);
  if (strcmp(name, "Child") == 0) CMReturnData(result, NULL, CMPI_string);
  if (strcmp(name, "On") == 0) CMReturnData(result, "hardly", CMPI_chars);
  if (strcmp(name, "Name") == 0) CMReturnWithChars(broker, CMPI_RC_ERR_ACCESS_DENIED, "secret");
  CMReturn(CMPI_RC_OK);
}

CMPropertyMIStub(Props, Props, broker, CMNoHook)
