#pragma once

#include <memory>

#include "providers/port/services/SelfTestDiagnostic.h"
#include "tests/providers/port/OnePort.h"
#include "tests/providers/port/ScriptedDriver.h"

namespace providers::port {

/// A good port with a driver that answers.
struct DriverPort : OnePort {
  DriverPort() {
    driver.testNames = {"Register test  (offline)", "Link test   (on/offline)"};
    driver.testValues = {0, 0};
  }
  OpenEthtool opener() {
    return [this] { return std::make_unique<ScriptedDriver>(driver); };
  }
  SelfTestDiagnostic selfTest(TestMode mode) {
    return SelfTestDiagnostic({finder(), reader(), opener(), waiting()}, mode);
  }
  Outcome self(TestMode mode = TestMode::Online) {
    SelfTestDiagnostic test = selfTest(mode);
    return test.run(test.devices().at(0), {}, control);
  }

  DriverScript driver;
};

}  // namespace providers::port
