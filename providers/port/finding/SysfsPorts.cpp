#include "providers/port/finding/SysfsPorts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "providers/common/Findings.h"
#include "providers/common/SysfsFiles.h"

namespace providers::port {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kEthernet = 1, kLoopback = 772;  // ARPHRD_*

/// What counts what went wrong. Packets that were dropped are no error: nobody may have wanted
/// them; and collisions are how half duplex works.
constexpr std::array<const char*, 14> kCounters{
    "rx_errors",         "tx_errors",          "rx_crc_errors",    "rx_fifo_errors",
    "rx_frame_errors",   "rx_length_errors",   "rx_missed_errors", "rx_over_errors",
    "tx_aborted_errors", "tx_carrier_errors",  "tx_fifo_errors",   "tx_heartbeat_errors",
    "tx_window_errors",  "rx_otherhost_errors"};

bool isThere(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

/// The last part of what the link leads to; empty when it is none.
std::string targetName(const fs::path& link) {
  std::error_code ignored;
  return printable(fs::read_symlink(link, ignored).filename().string());
}

/// The device's place on the PCI bus, where it or what it hangs on has one.
std::string pciAddressOf(const fs::path& device) {
  std::error_code error;
  std::string found;
  for (const fs::path& part : fs::canonical(device, error)) {
    const std::string name = part.string();
    const bool address = name.find_first_not_of("0123456789abcdef:.") == std::string::npos &&
                         std::count(name.begin(), name.end(), ':') == 2 &&
                         std::count(name.begin(), name.end(), '.') == 1;
    if (address) found = name;
  }
  return found;
}

std::string slotOf(const fs::path& sys, const std::string& pciAddress) {
  if (pciAddress.empty()) return {};
  for (const fs::path& slot : childrenOf(sys / "bus/pci/slots")) {
    const std::string address = readLine(slot / "address");
    if (!address.empty() && pciAddress.compare(0, address.size() + 1, address + ".") == 0)
      return printable(slot.filename().string());
  }
  return {};
}

bool isPort(const fs::path& folder, std::uint64_t type) {
  if (type == kLoopback) return true;
  const bool radio = isThere(folder / "wireless") || isThere(folder / "phy80211");
  return type == kEthernet && isThere(folder / "device") && !radio;
}

std::uint64_t number(const fs::path& file) { return readNumber(file).value_or(0); }

/// The commands that switch it, unless its name would be more than that to a shell.
void addCommands(Port& port) {
  if (!isPlain(port.name)) return;
  port.switchOn = "ip link set " + port.name + " up";
  port.switchOff = "ip link set " + port.name + " down";
}

void readCounters(const fs::path& folder, PortState& state) {
  for (const char* name : kCounters) {
    const fs::path file = folder / "statistics" / name;
    if (const auto count = readNumber(file))
      state.errors[name] = *count;
    else if (isThere(file))
      state.unreadable.emplace_back(name);
  }
}

Duplex duplexOf(const std::string& text) {
  return text == "full" ? Duplex::Full : text == "half" ? Duplex::Half : Duplex::Unknown;
}

}  // namespace

std::vector<Port> findSysfsPorts(const std::string& sys, const HasSelfTests& hasSelfTests) {
  std::vector<Port> ports;
  const fs::path root(sys);
  for (const fs::path& folder : childrenOf(root / "class/net")) {
    const std::uint64_t type = number(folder / "type");
    if (!isPort(folder, type)) continue;
    Port port;
    port.name = folder.filename().string();
    port.id = listable(printable(port.name));
    port.loopback = type == kLoopback;
    addCommands(port);
    if (!port.loopback) {
      port.driver = targetName(folder / "device/driver");
      port.address = readLine(folder / "address");
      port.pciAddress = pciAddressOf(folder / "device");
      port.slot = slotOf(root, port.pciAddress);
      port.selfTests = hasSelfTests(port.name);
    }
    if (!port.id.empty()) ports.push_back(std::move(port));
  }
  sortByName(ports);
  return ports;
}

PortState readSysfsPort(const std::string& sys, const Port& port) {
  constexpr unsigned long kUp = 1;  // IFF_UP
  const fs::path folder = fs::path(sys) / "class/net" / port.name;
  PortState state;
  const std::string flags = readLine(folder / "flags");
  state.present = isThere(folder);
  state.on = (std::strtoul(flags.c_str(), nullptr, 16) & kUp) != 0;
  if (const auto carrier = readNumber(folder / "carrier")) state.carrier = *carrier != 0;
  // Where the driver does not know, the system says -1, and some drivers all bits of 32.
  constexpr std::uint64_t kUnknown = 0xFFFFFFFF;
  const auto speed = readNumber(folder / "speed");
  if (speed && *speed > 0 && *speed < kUnknown) state.megabits = speed;
  state.duplex = duplexOf(readLine(folder / "duplex"));
  state.member = isThere(folder / "master");
  state.linkGains = readNumber(folder / "carrier_up_count");
  state.linkChanges = readNumber(folder / "carrier_changes");
  readCounters(folder, state);
  return state;
}

}  // namespace providers::port
