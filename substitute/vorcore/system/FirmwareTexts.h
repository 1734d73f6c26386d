#pragma once

#include <cstddef>
#include <string>

#include "framework/Export.h"

namespace vorcore {

/// The texts of a machine's firmware that can identify it; empty where it gives none.
struct FirmwareTexts {
  std::string biosVersion;   ///< SMBIOS type 0, "BIOS Version"
  std::string boardProduct;  ///< SMBIOS type 2, "Product"
  std::string productName;   ///< SMBIOS type 1, "Product Name"
};

/// The identifier that lists of machines use. Makers put a code for the machine's family first in
/// the version of its firmware ("ABE125 Ver. 01.30"): the first word of that text. Firmware without
/// one goes by its board, then by its product name. Fillers such as "Default string" count as
/// nothing; empty where nothing is left.
VORCORE_API std::string firmwareIdentifier(const FirmwareTexts& texts);

/// Reads the SMBIOS structures in `size` bytes at `table` (DSP0134, 6.1). Whatever is cut off or
/// contradicts itself ends the reading; what was found before stands.
VORCORE_API FirmwareTexts readSmbios(const unsigned char* table, std::size_t size);

}  // namespace vorcore
