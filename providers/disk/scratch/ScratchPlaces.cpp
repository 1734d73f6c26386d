#include "providers/disk/scratch/ScratchPlaces.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "providers/common/SysfsFiles.h"

namespace providers::disk {

namespace {

namespace fs = std::filesystem;

/// Blanks and the like are written as "\040".
std::string unescaped(const std::string& text) {
  const auto digit = [](char letter) { return letter >= '0' && letter <= '7'; };
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escaped = text[i] == '\\' && i + 3 < text.size() && digit(text[i + 1]) &&
                         digit(text[i + 2]) && digit(text[i + 3]);
    if (!escaped) {
      result += text[i];
      continue;
    }
    result +=
        static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + text[i + 3] - '0');
    i += 3;
  }
  return result;
}

bool hasOption(const std::string& options, const std::string& wanted) {
  return ("," + options + ",").find("," + wanted + ",") != std::string::npos;
}

bool has(const std::vector<std::string>& list, const std::string& wanted) {
  return std::find(list.begin(), list.end(), wanted) != list.end();
}

/// Whether the mount's source is the disk, or a partition of it.
bool isNamedAfter(const Disk& disk, const Mount& mount) {
  return mount.source == disk.node || std::any_of(disk.partitions.begin(), disk.partitions.end(),
                                                  [&mount](const Partition& partition) {
                                                    return mount.source == "/dev/" + partition.name;
                                                  });
}

/// Whether a btrfs with that member has members on the disk alone. Its source names one of them,
/// and what is written may come to any.
bool isButterOn(const Disk& disk, const Mount& mount, const std::string& sys) {
  const std::string member = fs::path(mount.source).filename().string();
  for (const fs::path& one : childrenOf(fs::path(sys) / "fs/btrfs")) {
    const std::vector<fs::path> members = childrenOf(one / "devices");
    const bool it = std::any_of(members.begin(), members.end(), [&member](const fs::path& device) {
      return device.filename() == member;
    });
    if (!it) continue;
    return std::all_of(members.begin(), members.end(), [&disk](const fs::path& device) {
      return has(disk.devices, readLine(device / "dev"));
    });
  }
  return false;
}

/// Whether the file system fits on the device whose number it has. It tells nowhere which others it
/// has, but its size is that of all.
bool fitsOnDevice(const Mount& mount, const std::string& sys) {
  constexpr std::uint64_t kSector = 512;
  const auto sectors = readNumber(fs::path(sys) / "dev/block" / mount.device / "size");
  return mount.bytes > 0 && sectors && mount.bytes / kSector <= *sectors;
}

/// By its number, or, for file systems that have numbers of their own, by their source. Of further
/// ones with such numbers, which may be in a program's or a far machine's hands, the source is a
/// mere word. That of a bcachefs names all members.
bool isOn(const Disk& disk, const Mount& mount, const std::string& sys) {
  if (has(disk.devices, mount.device))
    return !mayHaveFurtherDisks(mount) || fitsOnDevice(mount, sys);
  if (mount.device.compare(0, 2, "0:") != 0 || !isNamedAfter(disk, mount)) return false;
  return mount.type == "bcachefs" || (mount.type == "btrfs" && isButterOn(disk, mount, sys));
}

}  // namespace

bool mayHaveFurtherDisks(const Mount& mount) { return mount.type == "f2fs"; }

std::vector<Mount> parseMounts(const std::string& text) {
  std::vector<Mount> mounts;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string parent, root, options, word;
    Mount mount;
    words >> mount.id >> parent >> mount.device >> root >> mount.folder >> options;
    while (words >> word && word != "-") continue;
    std::string superOptions;
    words >> mount.type >> mount.source >> superOptions;
    if (!words) continue;
    mount.folder = unescaped(mount.folder);
    mount.source = unescaped(mount.source);
    mount.writable = hasOption(options, "rw") && hasOption(superOptions, "rw");
    mounts.push_back(std::move(mount));
  }
  return mounts;
}

std::vector<Mount> mountsOn(const Disk& disk, const std::vector<Mount>& mounts,
                            const std::string& sys) {
  std::vector<Mount> places;
  for (const Mount& mount : mounts)
    if (mount.writable && isOn(disk, mount, sys)) places.push_back(mount);
  return places;
}

}  // namespace providers::disk
