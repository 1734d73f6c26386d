#include <chrono>
#include <thread>

#include "providers/common/ProviderLibrary.h"
#include "providers/common/RunSources.h"
#include "providers/common/SharedReading.h"
#include "providers/port/finding/InterfacesWindows.h"
#include "providers/port/services/PingDiagnostic.h"
#include "providers/port/services/StatusDiagnostic.h"

namespace providers {

// No driver is asked to test its adapter: the system hands on no such request.
std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  using namespace port;
  const auto ports = std::make_shared<SharedReading<std::vector<Port>>>(
      [] { return portsAmong(listInterfaces()); }, steadySeconds);
  const FindPorts find = [ports] { return ports->get(); };
  const ReadPort read = [](const Port& one) { return readTablePort(readInterface, one); };
  // What the other end offers, the system keeps to itself.
  const ReadModes readModes = [](const Port&) { return LinkModes{}; };
  const Waiting waiting{steadySeconds, [](double seconds) {
                          std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
                        }};
  std::vector<std::unique_ptr<Diagnostic>> all;
  all.push_back(
      std::make_unique<StatusDiagnostic>(StatusSurroundings{find, read, readModes, waiting}));
  all.push_back(std::make_unique<PingDiagnostic>(PingSurroundings{find, read, openLoopbackEcho}));
  return all;
}

}  // namespace providers
