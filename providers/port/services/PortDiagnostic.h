#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/common/TestFacts.h"
#include "providers/port/finding/Port.h"

namespace providers::port {

/// One of the tests; its type is that of CIM_EthernetNICDiagnosticTest.EthernetNICTestType. All
/// have the setting HaltOnError beside their own.
using PortTest = FamilyTest;

/// What the tests wait by.
struct Waiting {
  std::function<double()> clock;      ///< seconds from any beginning
  std::function<void(double)> sleep;  ///< that many seconds
};

/// A test of network ports.
class PortDiagnostic : public Diagnostic {
 public:
  PortDiagnostic(FindPorts findPorts, const PortTest& test);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override;
  std::string refuse(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 protected:
  /// Whether the test is offered for the port.
  virtual bool suits(const Port& port) const = 0;
  virtual Outcome runOn(const Port& port, const RunSettings& settings, RunControl& control) = 0;

 private:
  const FindPorts m_findPorts;
  const DiagnosticDescription m_description;
};

/// Waits, unless the run is told to end; has a look several times a second, and tells the run's
/// progress. Returns false when it was cut short.
bool waitFor(double seconds, const Waiting& waiting, RunControl& control,
             const std::function<void()>& look);

/// What a run says of a port that somebody has switched off.
Outcome switchedOff(const Port& port);

/// What a run says of a port that is there no more.
Outcome portIsGone(const std::string& id);

}  // namespace providers::port
