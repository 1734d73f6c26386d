#include "providers/pcie/finding/Addresses.h"

#include <algorithm>
#include <system_error>

namespace providers::pcie {

namespace {

/// "0000:01:00.0", and "10000:01:00.0" behind a volume controller.
bool isAddress(const std::string& name) {
  return name.find_first_not_of("0123456789abcdef:.") == std::string::npos &&
         std::count(name.begin(), name.end(), ':') == 2 &&
         std::count(name.begin(), name.end(), '.') == 1;
}

}  // namespace

std::vector<std::string> addressesIn(const std::filesystem::path& link) {
  std::error_code error;
  std::vector<std::string> addresses;
  for (const std::filesystem::path& part : std::filesystem::read_symlink(link, error)) {
    const std::string name = part.string();
    if (name.compare(0, 3, "pci") == 0) addresses.clear();
    if (isAddress(name)) addresses.push_back(name);
  }
  return addresses;
}

}  // namespace providers::pcie
