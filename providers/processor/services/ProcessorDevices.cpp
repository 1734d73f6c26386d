#include "providers/processor/services/ProcessorDevices.h"

#include <algorithm>

namespace providers {

namespace {

std::string deviceId(const CpuPackage& package) { return "cpu" + std::to_string(package.number); }

}  // namespace

Device makeDevice(const CpuPackage& package) {
  using Uint16s = std::vector<std::uint16_t>;
  constexpr std::uint16_t kCpuEnabled = 1;
  Device device;
  device.id = deviceId(package);
  device.name = displayName(package.model);
  device.properties = {
      {"Role", std::string("Central Processor"), false},
      {"CPUStatus", kCpuEnabled, false},
      {"AddressWidth", static_cast<std::uint16_t>(8 * sizeof(void*)), false},
      {"NumberOfEnabledCores", static_cast<std::uint16_t>(package.cores), false},
      {"NumberOfEnabledThreads", static_cast<std::uint16_t>(package.online.size()), false},
      {"ThreadNumbers", Uint16s(package.online.begin(), package.online.end()), false}};
  if (package.megahertz > 0)
    device.properties.set("MaxClockSpeed", std::uint32_t{package.megahertz});
  return device;
}

const CpuPackage* findPackage(const std::vector<CpuPackage>& packages, const Device& device) {
  const auto found =
      std::find_if(packages.begin(), packages.end(),
                   [&device](const CpuPackage& package) { return deviceId(package) == device.id; });
  return found == packages.end() ? nullptr : &*found;
}

std::string displayName(const std::string& model) {
  std::string name;
  for (const char letter : model) {
    const bool kept = static_cast<unsigned char>(letter) > ' ' && letter != ',' && letter != '|' &&
                      letter != '\x7F';
    if (kept) {
      name += letter;
    } else if (!name.empty() && name.back() != ' ') {
      name += ' ';
    }
  }
  if (!name.empty() && name.back() == ' ') name.pop_back();
  return name.empty() ? "Processor" : name;
}

Outcome notTested(const std::string& why) {
  Outcome outcome;
  outcome.state = CompletionState::Incomplete;
  outcome.summary = "Not tested: " + why;
  outcome.text = outcome.summary + "\n";
  outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, {}});
  return outcome;
}

}  // namespace providers
