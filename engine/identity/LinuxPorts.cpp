#include <string>

#include "engine/identity/LinuxParts.h"
#include "engine/identity/Words.h"

namespace engine {
namespace {

constexpr std::size_t kMostPorts = 256;

/// A port of the machine's own; a card may pass for many more.
bool isPort(const SystemFolder& port) { return port.has("device") && !port.has("device/physfn"); }

/// A port that is bound to others shows their common address; its own stands aside.
std::string addressOf(const SystemFolder& port) {
  const std::string address = (port / "bonding_slave").serial("perm_hwaddr");
  if (!address.empty()) return address;
  return port.text("address").find_first_not_of("0:") == std::string::npos ? std::string()
                                                                           : port.serial("address");
}

Part portOf(const SystemFolder& port, const std::string& name) {
  const std::string driver = telling(port.targetOf("device/driver"));
  Part part;
  part.kind = "port";
  part.name = name;
  part.location = telling(port.targetOf("device"));
  part.version = driver.empty() ? driver : "driver " + driver;
  part.serial = addressOf(port);
  return part;
}

}  // namespace

std::vector<Part> portsUnder(const SystemFolder& root) {
  const SystemFolder all = root / "sys/class/net";
  std::vector<Part> parts;
  for (const std::string& name : all.names()) {
    if (parts.size() == kMostPorts) break;
    const SystemFolder port = all / name;
    if (isPort(port)) parts.push_back(portOf(port, name));
  }
  return parts;
}

}  // namespace engine
