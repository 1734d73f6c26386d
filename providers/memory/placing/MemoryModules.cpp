#include "providers/memory/placing/MemoryModules.h"

#include <algorithm>

#include "firmware/SmbiosTable.h"

namespace providers::memory {

namespace {

using firmware::SmbiosStructure;

constexpr std::size_t kMostOfAKind = 1024;
constexpr std::uint64_t kKibi = 1024;
constexpr std::uint64_t kMebi = kKibi * kKibi;

/// A text without blanks around it and what cannot be shown, of at most 64 characters.
std::string plain(std::string_view text) {
  constexpr std::size_t kLongest = 64;
  std::string kept;
  for (const char letter : text.substr(0, kLongest))
    kept += letter >= ' ' && letter <= '~' ? letter : '?';
  const std::size_t first = kept.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return kept.substr(first, kept.find_last_not_of(' ') - first + 1);
}

std::uint64_t bytesOf(const SmbiosStructure& module) {
  constexpr std::uint64_t kUnknown = 0xFFFF;
  constexpr std::uint64_t kSeeExtended = 0x7FFF;
  constexpr std::uint64_t kIsInKilobytes = 0x8000;
  const std::uint64_t size = module.number(0x0C, 2);
  if (size == kUnknown) return 0;
  if (size == kSeeExtended) return (module.number(0x1C, 4) & 0x7FFFFFFFU) * kMebi;
  return size & kIsInKilobytes ? (size - kIsInKilobytes) * kKibi : size * kMebi;
}

MemoryModule moduleOf(const SmbiosStructure& structure) {
  MemoryModule module;
  module.handle = structure.handle();
  module.array = static_cast<unsigned>(structure.number(0x04, 2));
  module.locator = plain(structure.text(0x10));
  module.bank = plain(structure.text(0x11));
  module.manufacturer = plain(structure.text(0x17));
  module.serial = plain(structure.text(0x18));
  module.part = plain(structure.text(0x1A));
  module.bytes = bytesOf(structure);
  return module;
}

/// Kibibytes in 32 bits, or where they do not suffice, bytes in 64.
MappedRange rangeOf(const SmbiosStructure& structure, std::size_t handle, std::size_t extended) {
  constexpr std::uint64_t kSeeExtended = 0xFFFFFFFF;
  MappedRange range;
  range.handle = static_cast<unsigned>(structure.number(handle, 2));
  if (structure.number(0x04, 4) == kSeeExtended) {
    range.first = structure.number(extended, 8);
    range.last = structure.number(extended + 8, 8);
  } else {
    range.first = structure.number(0x04, 4) * kKibi;
    range.last = structure.number(0x08, 4) * kKibi + kKibi - 1;
  }
  return range;
}

template <class Thing>
void keep(std::vector<Thing>& list, Thing thing) {
  if (list.size() < kMostOfAKind) list.push_back(std::move(thing));
}

bool answers(const std::vector<MappedRange>& ranges, std::uint64_t address, unsigned handle) {
  return std::any_of(ranges.begin(), ranges.end(), [=](const MappedRange& range) {
    return range.handle == handle && address >= range.first && address <= range.last;
  });
}

}  // namespace

ModuleTable moduleTable(std::string_view smbios) {
  constexpr unsigned kModule = 17, kArrayRange = 19, kModuleRange = 20;
  ModuleTable table;
  firmware::forEachStructure(smbios, [&](const SmbiosStructure& structure) {
    if (structure.type() == kModule) {
      MemoryModule module = moduleOf(structure);
      if (module.bytes > 0) keep(table.modules, std::move(module));
    } else if (structure.type() == kArrayRange) {
      keep(table.arrayRanges, rangeOf(structure, 0x0C, 0x0F));
    } else if (structure.type() == kModuleRange) {
      keep(table.moduleRanges, rangeOf(structure, 0x0C, 0x13));
    }
  });
  return table;
}

std::vector<MemoryModule> modulesAt(const ModuleTable& table, std::uint64_t address) {
  std::vector<MemoryModule> found;
  for (const MemoryModule& module : table.modules)
    if (answers(table.moduleRanges, address, module.handle)) found.push_back(module);
  if (!found.empty()) return found;
  for (const MemoryModule& module : table.modules)
    if (answers(table.arrayRanges, address, module.array)) found.push_back(module);
  return found;
}

std::string moduleName(const MemoryModule& module) {
  std::string name = module.locator.empty() ? module.bank : module.locator;
  if (name.empty()) name = "without a name";
  std::string rest;
  if (!module.serial.empty()) rest = "serial " + module.serial;
  if (!module.part.empty()) rest += (rest.empty() ? "part " : ", part ") + module.part;
  return rest.empty() ? name : name + " (" + rest + ")";
}

}  // namespace providers::memory
