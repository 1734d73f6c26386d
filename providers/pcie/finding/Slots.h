#pragma once

#include <map>
#include <string>

namespace providers::pcie {

/// Which slot of the board a device is in: as the system knows it, or else as the firmware's table
/// (SMBIOS, type 9) has it, which root alone may read.
class Slots {
 public:
  explicit Slots(const std::string& sys);

  /// Empty for what is in no slot, or in one that nobody names.
  std::string of(const std::string& address) const;

 private:
  std::map<std::string, std::string> m_bySystem;    ///< by address without function
  std::map<std::string, std::string> m_byFirmware;  ///< the same
};

}  // namespace providers::pcie
