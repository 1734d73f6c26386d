#pragma once

#include "providers/port/echo/EchoDoor.h"
#include "providers/port/services/PortDiagnostic.h"

namespace providers::port {

/// What the ping stands on.
struct PingSurroundings {
  FindPorts findPorts;
  ReadPort readPort;
  OpenEcho openEcho;
};

/// Sends packets to the machine itself and compares what comes back.
class PingDiagnostic : public PortDiagnostic {
 public:
  explicit PingDiagnostic(PingSurroundings surroundings);

  std::string refuse(const RunSettings& settings) const override;

 protected:
  bool suits(const Port& port) const override { return port.loopback; }
  Outcome runOn(const Port& port, const RunSettings& settings, RunControl& control) override;

 private:
  const PingSurroundings m_surroundings;
};

}  // namespace providers::port
