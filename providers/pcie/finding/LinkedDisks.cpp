#include "providers/pcie/finding/LinkedDisks.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "providers/common/SysfsFiles.h"
#include "providers/pcie/finding/Addresses.h"

namespace providers::pcie {

namespace {

namespace fs = std::filesystem;

/// A way to a drive that may have several has a name of its own, "nvme0c1n1", and no node; that of
/// the drive is "nvme0n1".
std::string nameOf(const fs::path& block) {
  std::string name = block.filename().string();
  if (readNumber(block / "hidden").value_or(0) == 0) return name;
  const std::size_t way = name.find('c');
  const std::size_t space = name.find('n', way == std::string::npos ? name.size() : way);
  if (name.compare(0, 4, "nvme") != 0 || space == std::string::npos) return {};
  return name.erase(way, space - way);
}

bool isOfStorage(const fs::path& sys, const std::string& address) {
  return readLine(sys / "bus/pci/devices" / address / "class").compare(0, 4, "0x01") == 0;
}

std::optional<LinkedDisk> diskOf(const fs::path& sys, const fs::path& block) {
  constexpr std::uint64_t kSector = 512;
  LinkedDisk disk;
  disk.chain = addressesIn(block);
  disk.name = nameOf(block);
  disk.node = "/dev/" + disk.name;
  disk.number = readLine(sys / "block" / disk.name / "dev");
  disk.bytes = readNumber(block / "size").value_or(0) * kSector;
  const bool fixed = readNumber(block / "removable").value_or(0) == 0;
  // Names with '!' have a folder of their own below /dev, and belong to old controllers.
  const bool named = !disk.name.empty() && disk.name == printable(disk.name) &&
                     disk.name.find('!') == std::string::npos;
  if (disk.chain.empty() || !named || disk.number.empty() || disk.bytes == 0 || !fixed ||
      !isOfStorage(sys, disk.chain.back()))
    return std::nullopt;
  return disk;
}

/// Its functions share the link of a device.
std::string withoutFunction(const std::string& address) {
  return address.substr(0, address.rfind('.'));
}

}  // namespace

std::vector<LinkedDisk> findLinkedDisks(const std::string& sys) {
  std::vector<LinkedDisk> all, single;
  for (const fs::path& block : childrenOf(fs::path(sys) / "block"))
    if (auto disk = diskOf(sys, block)) all.push_back(std::move(*disk));
  std::copy_if(all.begin(), all.end(), std::back_inserter(single), [&all](const LinkedDisk& one) {
    return std::count_if(all.begin(), all.end(),
                         [&one](const LinkedDisk& other) { return other.name == one.name; }) == 1;
  });
  return single;
}

bool comesOver(const Link& link, const LinkedDisk& disk) {
  return std::any_of(disk.chain.begin(), disk.chain.end(), [&link](const std::string& address) {
    return withoutFunction(address) == withoutFunction(link.device.address);
  });
}

}  // namespace providers::pcie
