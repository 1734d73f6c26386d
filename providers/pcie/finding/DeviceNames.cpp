#include "providers/pcie/finding/DeviceNames.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>

#include "providers/common/Findings.h"
#include "providers/common/SysfsFiles.h"

namespace providers::pcie {

namespace {

/// The four digits at that place of the line, with two blanks behind them.
std::optional<std::uint16_t> idAt(const std::string& line, std::size_t place) {
  constexpr std::size_t kDigits = 4;
  constexpr int kBase = 16;
  if (line.size() < place + kDigits + 2 || line[place + kDigits] != ' ') return std::nullopt;
  std::uint16_t id = 0;
  const char* const begin = line.data() + place;
  const auto [end, error] = std::from_chars(begin, begin + kDigits, id, kBase);
  if (error != std::errc{} || end != begin + kDigits) return std::nullopt;
  return id;
}

std::string nameAt(const std::string& line, std::size_t place) {
  constexpr std::size_t kBehindId = 6;
  return printable(line.substr(place + kBehindId));
}

/// Vendors stand at the beginning of a line, their devices behind a tabulator; the classes of
/// devices, which come behind them all, begin with a letter and a blank.
void readNames(std::istream& file, std::map<DeviceId, std::string>& names) {
  std::string vendorName;
  std::optional<std::uint16_t> vendor;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] != '\t') {
      vendor = idAt(line, 0);
      if (vendor) vendorName = nameAt(line, 0);
      continue;
    }
    const auto device = line.size() > 1 && line[1] != '\t' ? idAt(line, 1) : std::nullopt;
    if (!vendor || !device) continue;
    const auto wanted = names.find({*vendor, *device});
    if (wanted != names.end()) wanted->second = vendorName + " " + nameAt(line, 1);
  }
}

}  // namespace

std::map<DeviceId, std::string> deviceNames(const std::vector<DeviceId>& wanted,
                                            const std::vector<std::string>& files) {
  std::map<DeviceId, std::string> names;
  for (const DeviceId& id : wanted)
    names[id] =
        formatted("%04x:%04x", static_cast<unsigned>(id.first), static_cast<unsigned>(id.second));
  for (const std::string& name : files) {
    std::ifstream file(name);
    if (!file) continue;
    readNames(file, names);
    break;
  }
  return names;
}

}  // namespace providers::pcie
