#pragma once

#include <string>
#include <vector>

#include "providers/disk/finding/Disk.h"

namespace providers::disk {

/// Where a file system hangs in the tree of folders.
struct Mount {
  std::string device;  ///< "major:minor"
  std::string type;    ///< "ext4"
  std::string source;  ///< "/dev/sda1"
  std::string folder;
  bool writable = false;
};

/// What /proc/self/mountinfo says.
std::vector<Mount> parseMounts(const std::string& text);

/// The folders where a file on that disk can be made, the most specific ones last; only file
/// systems that can be written.
std::vector<std::string> mountsOn(const Disk& disk, const std::vector<Mount>& mounts);

}  // namespace providers::disk
