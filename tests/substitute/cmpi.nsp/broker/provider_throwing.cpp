// Providers that let C++ exceptions through the C interface.
#include <stdexcept>

#define CMPI_VERSION 200
#include "cmpi/cmpi.h"

namespace {

const CMPIBroker* broker = nullptr;

CMPIStatus ThrowerCleanup(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean) {
  throw std::runtime_error("not even tidy");
}

CMPIStatus ThrowerEnumInstanceNames(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                    const CMPIObjectPath*) {
  throw 7;
}

CMPIStatus ThrowerEnumInstances(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                const CMPIObjectPath*, const char**) {
  throw std::runtime_error("kaput");
}

CMPIStatus ThrowerGetInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                              const CMPIObjectPath* path, const char**) {
  CMReturnInstance(result, CMNewInstance(broker, path, nullptr));
  throw std::bad_alloc();
}

CMPIStatus ThrowerCreateInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const CMPIInstance*) {
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus ThrowerModifyInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const CMPIInstance*, const char**) {
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus ThrowerDeleteInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*) {
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus ThrowerExecQuery(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                            const CMPIObjectPath*, const char*, const char*) {
  CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

}  // namespace

CMInstanceMIStub(Thrower, Thrower, broker, CMNoHook)

    CMPI_EXTERN_C CMPIInstanceMI* ThrowingFactory_Create_InstanceMI(const CMPIBroker*,
                                                                    const CMPIContext*,
                                                                    CMPIStatus*) {
  throw std::runtime_error("not today");
}
