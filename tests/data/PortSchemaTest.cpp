#include <gtest/gtest.h>

#include "providers/port/services/PingDiagnostic.h"
#include "providers/port/services/StatusDiagnostic.h"
#include "tests/data/DeclaredInstances.h"

namespace data {
namespace {

TEST(PortSchema, DeclaresWhatThePortTestsShow) {
  using namespace providers::port;
  const FindPorts find = [] {
    Port port;
    port.name = port.id = "eth0";
    port.address = "52:54:00:12:34:56";
    Port loopback;
    loopback.name = loopback.id = "lo";
    loopback.loopback = true;
    return std::vector<Port>{port, loopback};
  };
  checkInstances(StatusDiagnostic({find, {}, {}, {}}));
  checkInstances(PingDiagnostic({find, {}, {}}));
}

}  // namespace
}  // namespace data
