#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "providers/memory/placing/MemoryModules.h"

namespace providers::memory {

namespace {

const char* const kTable = "/sys/firmware/dmi/tables/DMI";

}  // namespace

std::string firmwareTable() {
  constexpr std::size_t kLargest = std::size_t{1024} * 1024;
  std::ifstream file(kTable, std::ios::binary);
  std::string table(kLargest, '\0');
  file.read(table.data(), static_cast<std::streamsize>(kLargest));
  table.resize(static_cast<std::size_t>(file.gcount()));
  return table;
}

bool hasFirmwareTable() {
  std::error_code ignored;
  return std::filesystem::exists(kTable, ignored);
}

}  // namespace providers::memory
