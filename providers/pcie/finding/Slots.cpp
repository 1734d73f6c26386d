#include "providers/pcie/finding/Slots.h"

#include <filesystem>

#include "firmware/SmbiosTable.h"
#include "providers/common/Findings.h"
#include "providers/common/SysfsFiles.h"

namespace providers::pcie {

namespace {

namespace fs = std::filesystem;

std::string find(const std::map<std::string, std::string>& names, const std::string& address) {
  const auto found = names.find(address.substr(0, address.rfind('.')));
  return found == names.end() ? std::string() : found->second;
}

std::map<std::string, std::string> systemSlots(const fs::path& sys) {
  std::map<std::string, std::string> names;
  for (const fs::path& slot : childrenOf(sys / "bus/pci/slots")) {
    const std::string address = readLine(slot / "address");
    if (!address.empty()) names[address] = printable(slot.filename().string());
  }
  return names;
}

std::map<std::string, std::string> firmwareSlots(const fs::path& sys) {
  constexpr std::size_t kLargest = std::size_t{1024} * 1024;
  constexpr unsigned kSystemSlot = 9;
  std::map<std::string, std::string> names;
  const std::string table = readStart(sys / "firmware/dmi/tables/DMI", kLargest);
  firmware::forEachStructure(table, [&names](const firmware::SmbiosStructure& structure) {
    constexpr std::size_t kName = 0x04, kSegment = 0x0D, kBus = 0x0F, kFunction = 0x10;
    constexpr unsigned kNone = 0xFF, kFunctionBits = 3;
    if (structure.type() != kSystemSlot || !structure.has(kFunction)) return;
    const auto bus = static_cast<unsigned>(structure.number(kBus, 1));
    const auto place = static_cast<unsigned>(structure.number(kFunction, 1));
    if (bus == kNone && place == kNone) return;
    const auto segment = static_cast<unsigned>(structure.number(kSegment, 2));
    names[formatted("%04x:%02x:%02x", segment, bus, place >> kFunctionBits)] =
        printable(std::string(structure.text(kName)));
  });
  return names;
}

}  // namespace

Slots::Slots(const std::string& sys)
    : m_bySystem(systemSlots(sys)), m_byFirmware(firmwareSlots(sys)) {}

std::string Slots::of(const std::string& address) const {
  const std::string name = find(m_bySystem, address);
  return name.empty() ? find(m_byFirmware, address) : name;
}

}  // namespace providers::pcie
