#pragma once

#include "providers/port/ethtool/SelfTests.h"
#include "providers/port/services/PortDiagnostic.h"

namespace providers::port {

/// What the self-tests stand on.
struct SelfTestSurroundings {
  FindPorts findPorts;
  ReadPort readPort;
  OpenEthtool openEthtool;
  Waiting waiting;
};

/// Has a driver make the tests that it has: those that leave the port at work, or all of them.
class SelfTestDiagnostic : public PortDiagnostic {
 public:
  SelfTestDiagnostic(SelfTestSurroundings surroundings, TestMode mode);

 protected:
  bool suits(const Port& port) const override { return port.selfTests; }
  Outcome runOn(const Port& port, const RunSettings& settings, RunControl& control) override;

 private:
  const SelfTestSurroundings m_surroundings;
  const TestMode m_mode;
};

}  // namespace providers::port
