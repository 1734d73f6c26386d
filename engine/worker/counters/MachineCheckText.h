#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace engine::counters {

/// One machine check, as the kernel prints it.
struct MachineCheck {
  std::string processor;
  std::string bank;
  std::uint64_t status = 0;
  std::optional<std::uint64_t> address;
};

/// "mce: [Hardware Error]: CPU 0: Machine Check: 0 Bank 8: 9c00004000010091", or as a decoder has
/// it,
/// "[Hardware Error]: CPU:2 (17:31:0) MC17_STATUS[Over|CE]: 0xdc2040000000011b".
std::optional<MachineCheck> machineCheckIn(const std::string& message);

/// The address in one of the lines behind it: "TSC 0 ADDR 12345000", or "Error Addr: 0x12345000".
std::optional<std::uint64_t> addressIn(const std::string& message);

/// What happened, by its status: "corrected error of a cache".
std::string describe(const MachineCheck& check);

}  // namespace engine::counters
