#include "cmpi/cmpi.h"
#include "providers/common/RunSources.h"
#include "providers/common/cmpi/ProviderHost.h"
#include "providers/memory/MemoryDiagnostic.h"

namespace providers {

namespace {

std::unique_ptr<Diagnostic> makeDiagnostic() {
  static WriteBufferSettler settler;
  MemorySurroundings surroundings;
  surroundings.size = queryMemorySize;
  surroundings.clock = steadySeconds;
  surroundings.settler = &settler;
  surroundings.seed = randomSeed;
  return std::make_unique<MemoryDiagnostic>(std::move(surroundings));
}

/// Never destroyed: a run that a process leaves behind at its end may still use it.
ProviderHost& host() {
  static ProviderHost* const host = new ProviderHost("DIAGS_MemoryProvider", makeDiagnostic());
  return *host;
}

}  // namespace

}  // namespace providers

CMPI_EXTERN_C CMPIInstanceMI* DIAGS_MemoryProvider_Create_InstanceMI(const CMPIBroker* broker,
                                                                     const CMPIContext*,
                                                                     CMPIStatus* status) {
  return providers::createMI(providers::host, &providers::ProviderHost::instanceMI, broker, status);
}

CMPI_EXTERN_C CMPIAssociationMI* DIAGS_MemoryProvider_Create_AssociationMI(const CMPIBroker* broker,
                                                                           const CMPIContext*,
                                                                           CMPIStatus* status) {
  return providers::createMI(providers::host, &providers::ProviderHost::associationMI, broker,
                             status);
}

CMPI_EXTERN_C CMPIMethodMI* DIAGS_MemoryProvider_Create_MethodMI(const CMPIBroker* broker,
                                                                 const CMPIContext*,
                                                                 CMPIStatus* status) {
  return providers::createMI(providers::host, &providers::ProviderHost::methodMI, broker, status);
}
