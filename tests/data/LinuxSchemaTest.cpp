#include <gtest/gtest.h>

#include "providers/pcie/services/PcieDiagnostic.h"
#include "providers/port/services/PingDiagnostic.h"
#include "providers/port/services/SelfTestDiagnostic.h"
#include "providers/port/services/StatusDiagnostic.h"
#include "providers/sensors/services/SensorsDiagnostic.h"
#include "tests/data/DeclaredInstances.h"

namespace data {
namespace {

// The families that Linux alone has.

TEST(LinuxSchema, DeclaresWhatThePortTestsShow) {
  using namespace providers::port;
  const FindPorts find = [] {
    Port port;
    port.name = port.id = "eth0";
    port.address = "52:54:00:12:34:56";
    port.selfTests = true;
    Port loopback;
    loopback.name = loopback.id = "lo";
    loopback.loopback = true;
    return std::vector<Port>{port, loopback};
  };
  checkInstances(StatusDiagnostic({find, {}, {}, {}}));
  checkInstances(SelfTestDiagnostic({find, {}, {}, {}}, TestMode::Offline));
  checkInstances(PingDiagnostic({find, {}, {}}));
}

TEST(LinuxSchema, DeclaresWhatThePciExpressTestShows) {
  providers::pcie::PcieSurroundings surroundings;
  surroundings.hasLinks = [] { return true; };
  checkInstances(providers::pcie::PcieDiagnostic(surroundings));
}

TEST(LinuxSchema, DeclaresWhatTheSensorsTestShows) {
  providers::sensors::SensorsSurroundings surroundings;
  surroundings.hasSensors = [] { return true; };
  checkInstances(providers::sensors::SensorsDiagnostic(surroundings));
}

}  // namespace
}  // namespace data
