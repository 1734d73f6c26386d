#pragma once

#include "substitute/vorcore/system/FirmwareTexts.h"

namespace vorcore {

/// What the operating system tells of this machine's firmware.
FirmwareTexts thisMachinesFirmware();

/// The folder of the running program; UTF-8, empty where it cannot be told.
std::string programFolder();

}  // namespace vorcore
