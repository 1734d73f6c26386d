#include <chrono>
#include <thread>

#include "providers/common/ProviderLibrary.h"
#include "providers/common/RunSources.h"
#include "providers/common/SharedReading.h"
#include "providers/port/ethtool/EthtoolDoor.h"
#include "providers/port/ethtool/LinkModes.h"
#include "providers/port/ethtool/SelfTests.h"
#include "providers/port/finding/SysfsPorts.h"
#include "providers/port/services/PingDiagnostic.h"
#include "providers/port/services/SelfTestDiagnostic.h"
#include "providers/port/services/StatusDiagnostic.h"

namespace providers {

namespace {

const char* const kSys = "/sys";

std::vector<port::Port> findPorts() {
  const auto door = port::openEthtool();
  return port::findSysfsPorts(
      kSys, [&door](const std::string& name) { return port::countSelfTests(*door, name) > 0; });
}

}  // namespace

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  using namespace port;
  const auto ports = std::make_shared<SharedReading<std::vector<Port>>>(findPorts, steadySeconds);
  const FindPorts find = [ports] { return ports->get(); };
  const ReadPort read = [](const Port& one) { return readSysfsPort(kSys, one); };
  const ReadModes readModes = [](const Port& one) {
    return readLinkModes(*openEthtool(), one.name);
  };
  const Waiting waiting{steadySeconds, [](double seconds) {
                          std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
                        }};
  std::vector<std::unique_ptr<Diagnostic>> all;
  all.push_back(
      std::make_unique<StatusDiagnostic>(StatusSurroundings{find, read, readModes, waiting}));
  for (const TestMode mode : {TestMode::Online, TestMode::Offline})
    all.push_back(std::make_unique<SelfTestDiagnostic>(
        SelfTestSurroundings{find, read, openEthtool, waiting}, mode));
  all.push_back(std::make_unique<PingDiagnostic>(PingSurroundings{find, read, openLoopbackEcho}));
  return all;
}

}  // namespace providers
