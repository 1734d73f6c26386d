#include "engine/identity/Smbios.h"

#include <array>
#include <map>
#include <string>
#include <utility>

#include "engine/identity/Firmware.h"
#include "engine/identity/Words.h"
#include "firmware/SmbiosTable.h"

namespace engine {
namespace {

using firmware::SmbiosStructure;

constexpr std::size_t kMostOfAKind = 1024;

Part systemOf(const SmbiosStructure& system) {
  return systemPart({telling(system.text(0x04)), telling(system.text(0x05)),
                     telling(system.text(0x06)), tellingSerial(system.text(0x07)),
                     telling(system.text(0x19))});
}

Part boardOf(const SmbiosStructure& board) {
  Part part = boardPart({telling(board.text(0x04)),
                         telling(board.text(0x05)),
                         telling(board.text(0x06)),
                         tellingSerial(board.text(0x07)),
                         {}});
  part.location = telling(board.text(0x0A));
  return part;
}

/// The count in one byte, or where that overflows, in two of a later edition.
std::uint64_t countOf(const SmbiosStructure& processor, std::size_t offset, std::size_t wide) {
  constexpr std::uint64_t kSeeWide = 0xFF;
  const std::uint64_t count = processor.number(offset, 1);
  return count == kSeeWide && processor.has(wide + 1) ? processor.number(wide, 2) : count;
}

/// None where the socket is empty, or holds something else.
Part processorOf(const SmbiosStructure& processor) {
  constexpr std::uint64_t kCentral = 3;
  constexpr std::uint64_t kIsPopulated = 0x40;
  if (processor.number(0x05, 1) != kCentral) return {};
  if ((processor.number(0x18, 1) & kIsPopulated) == 0) return {};
  Part part;
  part.kind = "processor";
  part.location = telling(processor.text(0x04));
  part.name = joined({part.location, telling(processor.text(0x10))}, ": ");
  part.manufacturer = telling(processor.text(0x07));
  part.model = telling(processor.text(0x22));
  part.version = joined({counted(countOf(processor, 0x23, 0x2A), "core"),
                         counted(countOf(processor, 0x25, 0x2E), "thread")},
                        ", ");
  part.serial = tellingSerial(processor.text(0x20));
  return part;
}

/// 0 where the slot is empty, or nobody knows.
std::uint64_t bytesOf(const SmbiosStructure& module) {
  constexpr std::uint64_t kUnknown = 0xFFFF;
  constexpr std::uint64_t kSeeExtended = 0x7FFF;
  constexpr std::uint64_t kIsInKilobytes = 0x8000;
  constexpr std::uint64_t kMebi = 1024 * 1024;
  const std::uint64_t size = module.number(0x0C, 2);
  if (size == kUnknown) return 0;
  if (size == kSeeExtended) return (module.number(0x1C, 4) & 0x7FFFFFFFU) * kMebi;
  return (size & kIsInKilobytes) != 0 ? (size - kIsInKilobytes) * 1024 : size * kMebi;
}

std::string technologyOf(const SmbiosStructure& module) {
  static const std::map<std::uint64_t, const char*> kNames = {
      {0x12, "DDR"},    {0x13, "DDR2"},   {0x18, "DDR3"},   {0x1A, "DDR4"}, {0x1B, "LPDDR"},
      {0x1C, "LPDDR2"}, {0x1D, "LPDDR3"}, {0x1E, "LPDDR4"}, {0x20, "HBM"},  {0x21, "HBM2"},
      {0x22, "DDR5"},   {0x23, "LPDDR5"}, {0x24, "HBM3"}};
  const auto found = kNames.find(module.number(0x12, 1));
  return found == kNames.end() ? std::string() : found->second;
}

/// As it runs, or where that is unknown, as it could.
std::string speedOf(const SmbiosStructure& module) {
  constexpr std::uint64_t kSeeExtended = 0xFFFF;
  constexpr std::pair<std::size_t, std::size_t> kPlaces[] = {{0x20, 0x58}, {0x15, 0x54}};
  for (const auto& [place, extended] : kPlaces) {
    std::uint64_t speed = module.number(place, 2);
    if (speed == kSeeExtended) speed = module.number(extended, 4) & 0x7FFFFFFFU;
    if (speed != 0) return std::to_string(speed) + " MT/s";
  }
  return {};
}

/// None where the slot is empty.
Part moduleOf(const SmbiosStructure& module) {
  const std::string size = memorySize(bytesOf(module));
  if (size.empty()) return {};
  const std::string slot = telling(module.text(0x10));
  const std::string bank = telling(module.text(0x11));
  Part part;
  part.kind = "memory";
  part.name = joined({slot, joined({size, technologyOf(module), speedOf(module)}, " ")}, ": ");
  part.location = joined({bank, slot}, ", ");
  part.manufacturer = telling(module.text(0x17));
  part.model = telling(module.text(0x1A));
  part.version = telling(module.text(0x2B));
  part.serial = tellingSerial(module.text(0x18));
  return part;
}

/// The types that name parts, in the order of the report.
struct PartType {
  unsigned type;
  Part (*read)(const SmbiosStructure&);
};
constexpr std::array<PartType, 4> kPartTypes = {
    {{1, systemOf}, {2, boardOf}, {4, processorOf}, {17, moduleOf}}};

}  // namespace

Identity identityOfSmbios(std::string_view table) {
  constexpr unsigned kFirmware = 0;
  Identity identity;
  std::array<std::vector<Part>, kPartTypes.size()> found;
  firmware::forEachStructure(table, [&](const SmbiosStructure& structure) {
    if (structure.type() == kFirmware && identity.firmware.empty()) {
      identity.firmware = firmwareName(telling(structure.text(0x04)), telling(structure.text(0x05)),
                                       telling(structure.text(0x08)));
    }
    for (std::size_t i = 0; i < kPartTypes.size(); ++i) {
      if (structure.type() != kPartTypes[i].type || found[i].size() == kMostOfAKind) continue;
      Part part = kPartTypes[i].read(structure);
      if (!part.name.empty()) found[i].push_back(std::move(part));
    }
  });
  for (std::vector<Part>& parts : found) {
    for (Part& part : parts) identity.parts.push_back(std::move(part));
  }
  return identity;
}

}  // namespace engine
