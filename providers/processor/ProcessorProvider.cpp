#include "providers/common/ProviderLibrary.h"
#include "providers/common/QuickCheck.h"
#include "providers/common/RunSources.h"
#include "providers/common/SharedReading.h"
#include "providers/processor/services/ExchangeDiagnostic.h"
#include "providers/processor/services/ProcessorDevices.h"
#include "providers/processor/services/StatusDiagnostic.h"
#include "providers/processor/topology/CpuAffinity.h"
#include "providers/processor/topology/ThreadTime.h"

namespace providers {

namespace {

std::vector<Device> readDevices() {
  std::vector<Device> devices;
  for (const CpuPackage& package : queryCpuPackages()) devices.push_back(makeDevice(package));
  return devices;
}

/// Nothing here is ever destroyed: a run that a process leaves behind at its end may still use it.
ProcessorMachine makeMachine() {
  static const Executor& executor = *new Executor;
  static const SharedDevices& devices = *new SharedDevices(readDevices, steadySeconds);
  ProcessorMachine machine;
  machine.devices = [] { return devices.get(); };
  machine.packages = queryCpuPackages;
  machine.caches = queryCpuCaches;
  machine.kernels = [] { return loadKernels(kernelFolder()); };
  machine.seed = randomSeed;
  machine.surroundings = {bindToCpu, steadySeconds, threadSeconds, &executor};
  return machine;
}

/// The integer instructions, most of what a processor does. Its record is found by its job, though
/// its name is close to those of the "diag service" family, and explained under its own name.
std::unique_ptr<Diagnostic> makeCheck(const ProcessorMachine& machine) {
  const QuickCheck::Name name{"ZEL:Processor Check diag service", "Processor Check"};
  return std::make_unique<QuickCheck>(
      std::make_unique<CalculationDiagnostic>(calculationServices().front(), machine), name);
}

}  // namespace

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  static const ProcessorMachine& machine = *new ProcessorMachine(makeMachine());
  static const MessageTap& tap = *new MessageTap;
  std::vector<std::unique_ptr<Diagnostic>> diagnostics;
  for (const CalculationService& service : calculationServices())
    diagnostics.push_back(std::make_unique<CalculationDiagnostic>(service, machine));
  diagnostics.push_back(std::make_unique<ExchangeDiagnostic>(machine, tap));
  diagnostics.push_back(std::make_unique<StatusDiagnostic>(machine, queryHealth));
  diagnostics.push_back(makeCheck(machine));
  return diagnostics;
}

}  // namespace providers
