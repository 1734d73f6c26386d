#include "providers/port/finding/Port.h"

namespace providers::port {

std::string describe(const Port& port) {
  std::string details;
  const auto add = [&details](const std::string& text) {
    if (!text.empty()) details += (details.empty() ? "" : ", ") + text;
  };
  add(port.driver);
  add(port.address);
  add(port.pciAddress.empty() ? "" : "PCI " + port.pciAddress);
  add(port.slot.empty() ? "" : "slot " + port.slot);
  return port.id + (details.empty() ? "" : " (" + details + ")");
}

}  // namespace providers::port
