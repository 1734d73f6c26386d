#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace providers::memory {

/// Where an address of this process is in the machine's memory, or why nobody can tell.
struct PhysicalPlace {
  std::optional<std::uint64_t> address;
  std::string whyNot;
};

/// By the system's table of this process's pages; on Windows there is none.
PhysicalPlace physicalPlace(const void* address);

/// The same from the file of such a table: 8 bytes for each page, by the page's number.
PhysicalPlace readPhysicalPlace(const std::string& file, std::uint64_t address);

}  // namespace providers::memory
