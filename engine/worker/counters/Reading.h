#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "engine/system/SystemFolder.h"

/// The files in which the system counts the errors of this machine, read as they are: most never
/// change, and only one that did is taken apart. A counter that cannot be read is none.
namespace engine::counters {

enum class Place : std::uint8_t { kMemory, kMachineCheck, kPci, kDisk, kPort };

/// Of what kind, which one ("0000:03:00.0", "mc0/dimm3"), and the file of it that counts.
using Key = std::tuple<Place, std::string, std::string>;
using Reading = std::map<Key, std::string>;

/// All that are there now under `root`, which is the folder that holds "sys" and "proc".
Reading readAll(const SystemFolder& root);

void readMemory(const SystemFolder& root, Reading& reading);
void readMachineChecks(const SystemFolder& root, Reading& reading);
void readPci(const SystemFolder& root, Reading& reading);
void readDisks(const SystemFolder& root, Reading& reading);
void readPorts(const SystemFolder& root, Reading& reading);

inline bool begins(const std::string& text, const char* start) { return text.rfind(start, 0) == 0; }

/// Puts the file into the reading where there is something in it.
bool take(const SystemFolder& folder, const std::string& file, Place place, const std::string& part,
          Reading& reading);

}  // namespace engine::counters
