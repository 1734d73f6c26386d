#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace providers {

/// What the system knows of a hardware thread; without a value where it does not tell.
struct ThreadHealth {
  unsigned cpu = 0;
  std::string microcode;                       ///< empty where it is not known
  std::optional<unsigned> megahertz;           ///< now
  std::optional<std::uint64_t> coreThrottles;  ///< since the system was started, as the next two
  std::optional<std::uint64_t> packageThrottles;
  std::optional<std::uint64_t> machineChecks;  ///< exceptions: errors that were not corrected
};

struct Health {
  std::vector<ThreadHealth> threads;
  std::vector<unsigned> off;     ///< threads of the machine that are there and not in use
  bool isThreadingOff = false;   ///< on purpose: each core has one thread
  bool hadMachineCheck = false;  ///< the system remembers one
};

/// Asks the system about these threads.
Health queryHealth(const std::vector<unsigned>& cpus);

/// The same from the files of a Linux system whose root folder is `root`.
Health readHealth(const std::string& root, const std::vector<unsigned>& cpus);

/// Whether the system says anything of the threads.
bool isKnown(const Health& health);

struct Concern {
  std::string found;
  std::string whatToDo;  ///< within a sentence: "update the firmware"

  std::string line() const { return found + ": " + whatToDo; }
};

/// What gives cause for concern.
std::vector<Concern> concerns(const Health& health);

/// All of it, in lines.
std::string healthText(const Health& health);

}  // namespace providers
