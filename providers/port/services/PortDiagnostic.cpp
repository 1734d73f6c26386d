#include "providers/port/services/PortDiagnostic.h"

#include <algorithm>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/common/NumberSetting.h"

namespace providers::port {

namespace {

DiagnosticDescription descriptionOf(const PortTest& test) {
  constexpr FamilyFacts kFamily{"DIAGS_Port", "DIAGS: Port ", "Network Port ",
                                "EthernetNICTestType", "DIAGS_PortSelfTestSettings"};
  PortTest withOwn = test;
  withOwn.settings.set("HaltOnError", false);
  DiagnosticDescription description = describeTest(kFamily, withOwn);
  // What one of them does to a port would be found by another.
  description.exclusive = Exclusive::Device;
  return description;
}

Device deviceOf(const Port& port) {
  constexpr std::uint16_t kOther = 1, kEthernet = 2;
  const std::string& kind = port.driver.empty() ? port.model : port.driver;
  Device device;
  device.id = port.id;
  device.name = port.loopback ? "Loopback Interface"
                              : listable(kind.empty() ? "" : kind + " ") + "Network Port";
  device.properties = {{"LinkTechnology", port.loopback ? kOther : kEthernet, false}};
  if (!port.address.empty()) device.properties.set("PermanentAddress", port.address);
  return device;
}

}  // namespace

PortDiagnostic::PortDiagnostic(FindPorts findPorts, const PortTest& test)
    : m_findPorts(std::move(findPorts)), m_description(descriptionOf(test)) {}

std::vector<Device> PortDiagnostic::devices() const {
  std::vector<Device> devices;
  for (const Port& port : m_findPorts())
    if (suits(port)) devices.push_back(deviceOf(port));
  return devices;
}

std::string PortDiagnostic::refuse(const RunSettings& settings) const {
  return refuseUnknown(settings, {"PacketSizes", "LinkSpeeds", "LoopbackLayers"});
}

Outcome PortDiagnostic::run(const Device& device, const RunSettings& settings,
                            RunControl& control) {
  for (const Port& port : m_findPorts())
    if (port.id == device.id) return runOn(port, settings, control);
  return portIsGone(device.id);
}

bool waitFor(double seconds, const Waiting& waiting, RunControl& control,
             const std::function<void()>& look) {
  constexpr double kStep = 0.1;
  const double begin = waiting.clock();
  for (double passed = 0; passed < seconds; passed = waiting.clock() - begin) {
    if (control.stopRequested()) return false;
    control.progress(passed / seconds);
    waiting.sleep(std::min(kStep, seconds - passed));
    look();
  }
  control.progress(1);
  return !control.stopRequested();
}

Outcome switchedOff(const Port& port) {
  return notTested("Not tested: the port is switched off",
                   describe(port) + " is administratively down",
                   "switch it on" + inBrackets(port.switchOn) + " and run the test again");
}

Outcome portIsGone(const std::string& id) {
  return notTested("Not tested: the port is gone", "there is no port " + id + " any more");
}

}  // namespace providers::port
