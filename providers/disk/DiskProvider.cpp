#include <chrono>
#include <thread>

#include "providers/common/ProviderLibrary.h"
#include "providers/common/RunSources.h"
#include "providers/common/SharedReading.h"
#include "providers/disk/finding/MachineDisks.h"
#include "providers/disk/services/AlignmentDiagnostic.h"
#include "providers/disk/services/CompareDiagnostic.h"
#include "providers/disk/services/HealthDiagnostic.h"
#include "providers/disk/services/ReadDiagnostic.h"
#include "providers/disk/services/SelfTestDiagnostic.h"

namespace providers {

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  using namespace disk;
  const auto disks =
      std::make_shared<SharedReading<std::vector<Disk>>>(findMachineDisks, steadySeconds);
  const FindDisks find = [disks] { return disks->get(); };
  std::vector<std::unique_ptr<Diagnostic>> all;
  const ReadSurroundings reading{find, openSource, steadySeconds, randomSeed};
  all.push_back(std::make_unique<ReadDiagnostic>(reading, ReadOrder::Sequential));
  all.push_back(std::make_unique<ReadDiagnostic>(reading, ReadOrder::Random));
  all.push_back(std::make_unique<AlignmentDiagnostic>(find));
  all.push_back(std::make_unique<HealthDiagnostic>(find, openDrive, HealthQuestion::Status));
  all.push_back(std::make_unique<HealthDiagnostic>(find, openDrive, HealthQuestion::GrownDefects));
  if (systemHasScratchFiles())
    all.push_back(std::make_unique<CompareDiagnostic>(
        CompareSurroundings{find, openScratch, steadySeconds, randomSeed}));
  if (!systemHandsCommandsOn()) return all;
  const SelfTestSurroundings selfTests{
      find, openDrive, steadySeconds,
      [](double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }};
  all.push_back(std::make_unique<SelfTestDiagnostic>(selfTests, SelfTestKind::Short));
  all.push_back(std::make_unique<SelfTestDiagnostic>(selfTests, SelfTestKind::Extended));
  return all;
}

}  // namespace providers
