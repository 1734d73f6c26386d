#include <gtest/gtest.h>

#include "providers/pcie/services/PcieDiagnostic.h"
#include "providers/port/services/SelfTestDiagnostic.h"
#include "providers/sensors/services/SensorsDiagnostic.h"
#include "tests/data/DeclaredInstances.h"

namespace data {
namespace {

// What Linux alone has.

TEST(LinuxSchema, DeclaresWhatThePortSelfTestShows) {
  using namespace providers::port;
  const FindPorts find = [] {
    Port port;
    port.name = port.id = "eth0";
    port.address = "52:54:00:12:34:56";
    port.selfTests = true;
    return std::vector<Port>{port};
  };
  checkInstances(SelfTestDiagnostic({find, {}, {}, {}}, TestMode::Offline));
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
