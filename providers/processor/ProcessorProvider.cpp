#include "cmpi/cmpi.h"
#include "providers/common/RunSources.h"
#include "providers/common/cmpi/ProviderHost.h"
#include "providers/processor/CpuAffinity.h"
#include "providers/processor/ProcessorDiagnostic.h"

namespace providers {

namespace {

std::unique_ptr<Diagnostic> makeDiagnostic() {
  constexpr double kTargetSeconds = 7;
  static ResultTap tap;
  ProcessorSurroundings surroundings{bindToCpu, steadySeconds, processorOperations(), &tap};
  return std::make_unique<ProcessorDiagnostic>(queryCpuPackages, std::move(surroundings),
                                               randomSeed, kTargetSeconds);
}

/// Never destroyed: a run that a process leaves behind at its end may still use it.
ProviderHost& host() {
  static ProviderHost* const host = new ProviderHost("DIAGS_ProcessorProvider", makeDiagnostic());
  return *host;
}

}  // namespace

}  // namespace providers

CMPI_EXTERN_C CMPIInstanceMI* DIAGS_ProcessorProvider_Create_InstanceMI(const CMPIBroker* broker,
                                                                        const CMPIContext*,
                                                                        CMPIStatus* status) {
  return providers::createMI(providers::host, &providers::ProviderHost::instanceMI, broker, status);
}

CMPI_EXTERN_C CMPIAssociationMI* DIAGS_ProcessorProvider_Create_AssociationMI(
    const CMPIBroker* broker, const CMPIContext*, CMPIStatus* status) {
  return providers::createMI(providers::host, &providers::ProviderHost::associationMI, broker,
                             status);
}

CMPI_EXTERN_C CMPIMethodMI* DIAGS_ProcessorProvider_Create_MethodMI(const CMPIBroker* broker,
                                                                    const CMPIContext*,
                                                                    CMPIStatus* status) {
  return providers::createMI(providers::host, &providers::ProviderHost::methodMI, broker, status);
}
