#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "providers/port/services/StatusDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/OutcomeTexts.h"

namespace providers::port {

/// A good port, and what changes in it while a test waits.
struct OnePort {
  OnePort() {
    port.name = port.id = "eth0";
    port.driver = "e1000e";
    port.slot = "3";
    port.selfTests = true;
    state.present = state.on = true;
    state.carrier = true;
    state.megabits = 1000;
    state.duplex = Duplex::Full;
    state.linkGains = 0;
    state.linkChanges = 2;
    state.errors = {{"rx_errors", 5}, {"rx_crc_errors", 5}, {"tx_errors", 0}};
    port.switchOn = "ip link set eth0 up";
    modes.common = LinkMode{1000, true};
  }
  FindPorts finder() {
    return [this] { return std::vector<Port>{port}; };
  }
  ReadPort reader() {
    return [this](const Port&) { return state; };
  }
  ReadModes modesReader() {
    return [this](const Port&) { return modes; };
  }
  Waiting waiting() {
    return {[this] { return now; },
            [this](double seconds) {
              now += seconds;
              whileWaiting();
            }};
  }
  StatusDiagnostic statusTest() {
    return StatusDiagnostic({finder(), reader(), modesReader(), waiting()});
  }
  Outcome status() {
    StatusDiagnostic test = statusTest();
    return test.run(test.devices().at(0), {}, control);
  }

  Port port;
  PortState state;
  LinkModes modes;
  double now = 0;
  std::function<void()> whileWaiting = [] {};
  FakeControl control;
};

inline RunSettings with(const std::string& name, Value value, bool quick = false) {
  RunSettings settings;
  settings.quick = quick;
  settings.properties = {{name, std::move(value), false}};
  return settings;
}

}  // namespace providers::port
