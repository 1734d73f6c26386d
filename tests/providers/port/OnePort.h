#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "providers/port/services/SelfTestDiagnostic.h"
#include "providers/port/services/StatusDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/OutcomeTexts.h"
#include "tests/providers/port/ScriptedDriver.h"

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
    driver.testNames = {"Register test  (offline)", "Link test   (on/offline)"};
    driver.testValues = {0, 0};
  }
  FindPorts finder() {
    return [this] { return std::vector<Port>{port}; };
  }
  ReadPort reader() {
    return [this](const Port&) { return state; };
  }
  OpenEthtool opener() {
    return [this] { return std::make_unique<ScriptedDriver>(driver); };
  }
  Waiting waiting() {
    return {[this] { return now; },
            [this](double seconds) {
              now += seconds;
              whileWaiting();
            }};
  }
  StatusDiagnostic statusTest() {
    return StatusDiagnostic({finder(), reader(), opener(), waiting()});
  }
  SelfTestDiagnostic selfTest(TestMode mode) {
    return SelfTestDiagnostic({finder(), reader(), opener(), waiting()}, mode);
  }
  Outcome status() {
    StatusDiagnostic test = statusTest();
    return test.run(test.devices().at(0), {}, control);
  }
  Outcome self(TestMode mode = TestMode::Online) {
    SelfTestDiagnostic test = selfTest(mode);
    return test.run(test.devices().at(0), {}, control);
  }

  Port port;
  PortState state;
  DriverScript driver;
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
