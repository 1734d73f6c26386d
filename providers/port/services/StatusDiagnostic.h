#pragma once

#include "providers/port/services/LinkFindings.h"
#include "providers/port/services/PortDiagnostic.h"

namespace providers::port {

/// What the status test stands on.
struct StatusSurroundings {
  FindPorts findPorts;
  ReadPort readPort;
  ReadModes readModes;
  Waiting waiting;
};

/// Looks at a port's link, and for a while at what it counts as errors.
class StatusDiagnostic : public PortDiagnostic {
 public:
  explicit StatusDiagnostic(StatusSurroundings surroundings);

  std::string refuse(const RunSettings& settings) const override;
  double passSeconds(const RunSettings& settings) const override;

 protected:
  bool suits(const Port& port) const override { return !port.loopback; }
  Outcome runOn(const Port& port, const RunSettings& settings, RunControl& control) override;

 private:
  /// Watches the port for so many seconds; false when that was cut short.
  bool watchIt(const Port& port, double seconds, RunControl& control, PortWatch& watch) const;

  const StatusSurroundings m_surroundings;
};

}  // namespace providers::port
