#pragma once

#include <cstdint>
#include <string>

namespace providers::memory {

/// The memory of the machine, in bytes, and what of it this process can have.
struct MemorySize {
  std::uint64_t installed = 0;  ///< what the system manages
  std::uint64_t usable = 0;     ///< the same, or the limit of the container
  std::uint64_t available = 0;  ///< what can be had now without swapping or reaching a limit
};

/// Asks the system. All zero when it does not say.
MemorySize queryMemorySize();

/// The same from the files of a Linux system whose root folder is `root`, "" for the real one.
MemorySize readMemorySize(const std::string& root);

/// How much this process has mapped, by the same.
std::uint64_t readMappedBytes(const std::string& root);

}  // namespace providers::memory
