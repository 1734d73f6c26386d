#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace providers::memory {

/// A memory module as the firmware knows it.
struct MemoryModule {
  unsigned handle = 0;
  unsigned array = 0;   ///< the handle of what it is part of
  std::string locator;  ///< what is printed beside its slot: "DIMM_A2"
  std::string bank;
  std::string manufacturer;
  std::string part;
  std::string serial;
  std::uint64_t bytes = 0;  ///< 0: the slot is empty
};

/// Addresses, in the order of the machine's memory, and what answers to them.
struct MappedRange {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  unsigned handle = 0;  ///< of a module, or of an array of them
};

/// What the firmware's table says of memory.
struct ModuleTable {
  std::vector<MemoryModule> modules;      ///< those that are there
  std::vector<MappedRange> moduleRanges;  ///< of single modules
  std::vector<MappedRange> arrayRanges;
};

/// From any bytes; of each kind, at most 1024 are taken.
ModuleTable moduleTable(std::string_view smbios);

/// The modules that answer to an address, as far as the firmware tells: one, or those of which one
/// does. Empty where it does not say.
std::vector<MemoryModule> modulesAt(const ModuleTable& table, std::uint64_t address);

/// "DIMM_A2 (serial S1, part P1)".
std::string moduleName(const MemoryModule& module);

/// The table of this machine; empty where it has none or does not show it.
std::string firmwareTable();

/// Whether this machine has such a table, be it shown or not.
bool hasFirmwareTable();

}  // namespace providers::memory
