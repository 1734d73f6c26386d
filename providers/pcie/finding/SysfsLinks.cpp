#include "providers/pcie/finding/SysfsLinks.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <utility>

#include "providers/common/SysfsFiles.h"
#include "providers/pcie/finding/Addresses.h"
#include "providers/pcie/finding/Capability.h"
#include "providers/pcie/finding/Slots.h"

namespace providers::pcie {

namespace {

namespace fs = std::filesystem;

constexpr const char* kDevices = "bus/pci/devices";

bool isThere(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

/// The port that a device is linked to; empty for what hangs on no link. Links and the insides of
/// switches take turns: below a root's port there is a link, below a switch's upper port none, and
/// below its lower ones a link again.
std::string portAbove(const fs::path& devices, const fs::path& device) {
  const std::vector<std::string> chain = addressesIn(device);
  if (chain.size() < 2 || chain.size() % 2 != 0) return {};
  const std::string& port = chain[chain.size() - 2];
  const bool both =
      isThere(device / "current_link_width") && isThere(devices / port / "current_link_width");
  return both ? port : std::string();
}

/// "16.0 GT/s PCIe" in tenths; "Unknown" is nothing.
std::optional<unsigned> speedOf(const std::string& text) {
  unsigned whole = 0, tenth = 0;
  const char* const end = text.data() + text.size();
  auto [rest, error] = std::from_chars(text.data(), end, whole);
  if (error != std::errc{} || whole == 0 || whole > 10000) return std::nullopt;
  if (rest != end && *rest == '.') rest = std::from_chars(rest + 1, end, tenth).ptr;
  constexpr unsigned kTenths = 10;
  const bool unit = std::string(rest, end).compare(0, 5, " GT/s") == 0;
  if (!unit || tenth >= kTenths) return std::nullopt;
  return whole * kTenths + tenth;
}

/// 0 stands for no link, and a device that does not answer says 63 or 255.
std::optional<unsigned> widthOf(const fs::path& file) {
  constexpr unsigned kMost = 32;
  const auto width = readNumber(file);
  if (!width || *width == 0 || *width > kMost) return std::nullopt;
  return static_cast<unsigned>(*width);
}

unsigned long hexadecimal(const fs::path& file) {
  constexpr int kBase = 16;
  return std::strtoul(readLine(file).c_str(), nullptr, kBase);
}

Link readLink(const std::string& sys, const std::string& device, const std::string& port,
              const Slots& slots) {
  const fs::path folder = fs::path(sys) / kDevices / device;
  Link link;
  link.device = readEnd(sys, device);
  link.port = readEnd(sys, port);
  link.allowedSpeed = targetSpeed(readAll(fs::path(sys) / kDevices / port / "config"));
  link.vendorId = static_cast<std::uint16_t>(hexadecimal(folder / "vendor"));
  link.deviceId = static_cast<std::uint16_t>(hexadecimal(folder / "device"));
  link.deviceClass = static_cast<std::uint32_t>(hexadecimal(folder / "class"));
  link.slot = slots.of(device);
  return link;
}

/// Lines of a name and a number; their sum is another one of these.
bool readCounts(const fs::path& file, ErrorCounts& counts) {
  const std::string text = readAll(file);
  if (text.empty()) return false;
  std::istringstream lines(text);
  for (std::string name; lines >> name;) {
    std::uint64_t count = 0;
    if (!(lines >> count)) return false;
    if (name.compare(0, 5, "TOTAL") != 0) counts[printable(name)] = count;
  }
  return true;
}

}  // namespace

bool hasLinks(const std::string& sys) {
  const fs::path devices = fs::path(sys) / kDevices;
  const auto all = childrenOf(devices);
  return std::any_of(all.begin(), all.end(), [&devices](const fs::path& device) {
    return !portAbove(devices, device).empty();
  });
}

std::vector<Link> findLinks(const std::string& sys) {
  const fs::path devices = fs::path(sys) / kDevices;
  const Slots slots(sys);
  std::vector<Link> links;
  for (const fs::path& device : childrenOf(devices)) {
    const std::string port = portAbove(devices, device);
    // By name: the other functions of a device come after its first one.
    const bool known = std::any_of(links.begin(), links.end(),
                                   [&port](const Link& link) { return link.port.address == port; });
    if (!port.empty() && !known)
      links.push_back(readLink(sys, device.filename().string(), port, slots));
  }
  return links;
}

LinkEnd readEnd(const std::string& sys, const std::string& address) {
  const fs::path folder = fs::path(sys) / kDevices / address;
  return {address,
          {widthOf(folder / "current_link_width"), speedOf(readLine(folder / "current_link_speed")),
           widthOf(folder / "max_link_width"), speedOf(readLine(folder / "max_link_speed"))}};
}

AllErrors readErrors(const std::string& sys) {
  AllErrors all;
  for (const fs::path& device : childrenOf(fs::path(sys) / kDevices)) {
    DeviceErrors errors;
    bool any = false;
    for (auto [file, counts] : {std::pair{"aer_dev_correctable", &errors.corrected},
                                std::pair{"aer_dev_nonfatal", &errors.nonfatal},
                                std::pair{"aer_dev_fatal", &errors.fatal}}) {
      if (!isThere(device / file)) continue;
      any = true;
      if (!readCounts(device / file, *counts)) errors.unreadable = true;
    }
    if (any) all[device.filename().string()] = std::move(errors);
  }
  return all;
}

std::string readConfiguration(const std::string& sys, const std::string& address) {
  constexpr std::size_t kForAll = 64;
  return readStart(fs::path(sys) / kDevices / address / "config", kForAll);
}

}  // namespace providers::pcie
