// Providers whose factories fail, each in its own way.

#include <stdexcept>

#include "cmpi/cmpi.h"

namespace {

const CMPIBroker* broker = nullptr;

CMPIStatus halfMethodCleanup(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) {
  return CMPIStatus{CMPI_RC_OK, nullptr};
}
CMPIStatus halfInvokeMethod(CMPIMethodMI*, const CMPIContext*, const CMPIResult*,
                            const CMPIObjectPath*, const char*, const CMPIArgs*, CMPIArgs*) {
  return CMPIStatus{CMPI_RC_OK, nullptr};
}

}  // namespace

CMMethodMIStub(half, Half, broker, CMNoHook)

    CMPI_EXTERN_C CMPIInstanceMI* Half_Create_InstanceMI(const CMPIBroker* theBroker,
                                                         const CMPIContext*, CMPIStatus* status) {
  CMSetStatusWithChars(theBroker, status, CMPI_RC_ERR_ACCESS_DENIED, "no right to read the fan");
  return nullptr;
}

CMPI_EXTERN_C CMPIInstanceMI* Failing_Create_InstanceMI(const CMPIBroker* theBroker,
                                                        const CMPIContext*, CMPIStatus* status) {
  CMSetStatusWithChars(theBroker, status, CMPI_RC_ERR_FAILED, "the fan is out of order");
  return nullptr;
}

CMPI_EXTERN_C CMPIInstanceMI* Throwing_Create_InstanceMI(const CMPIBroker*, const CMPIContext*,
                                                         CMPIStatus*) {
  throw std::runtime_error("the fan fell off");
}
