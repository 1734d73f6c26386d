#include "providers/disk/scratch/ScratchPlaces.h"

#include <algorithm>
#include <sstream>

namespace providers::disk {

namespace {

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

/// Those that lie on a disk although they have numbers of their own. Of others, which may be in a
/// program's or a far machine's hands, the source is a mere word.
bool hasNumbersOfItsOwn(const std::string& type) { return type == "btrfs" || type == "bcachefs"; }

/// By its number, or, for file systems that have numbers of their own, by the name of their source.
bool isOn(const Disk& disk, const Mount& mount) {
  const auto& devices = disk.devices;
  if (std::find(devices.begin(), devices.end(), mount.device) != devices.end()) return true;
  if (mount.device.compare(0, 2, "0:") != 0 || !hasNumbersOfItsOwn(mount.type)) return false;
  return mount.source == disk.node || std::any_of(disk.partitions.begin(), disk.partitions.end(),
                                                  [&mount](const Partition& partition) {
                                                    return mount.source == "/dev/" + partition.name;
                                                  });
}

}  // namespace

std::vector<Mount> parseMounts(const std::string& text) {
  std::vector<Mount> mounts;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string number, parent, root, options, word;
    Mount mount;
    words >> number >> parent >> mount.device >> root >> mount.folder >> options;
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

std::vector<std::string> mountsOn(const Disk& disk, const std::vector<Mount>& mounts) {
  std::vector<std::string> folders;
  for (const Mount& mount : mounts)
    if (mount.writable && isOn(disk, mount)) folders.push_back(mount.folder);
  return folders;
}

}  // namespace providers::disk
