#pragma once

#include <string>
#include <vector>

#include "providers/disk/finding/Disk.h"

namespace providers::disk {

/// Where a file system hangs in the tree of folders.
struct Mount {
  std::string id;      ///< of this mount among all that there are
  std::string device;  ///< "major:minor"
  std::string type;    ///< "ext4"
  std::string source;  ///< "/dev/sda1"
  std::string folder;
  bool writable = false;
};

/// What /proc/self/mountinfo says.
std::vector<Mount> parseMounts(const std::string& text);

/// Where a file on that disk, and no other, can be made, the most specific places last; only file
/// systems that can be written. `sys` ("/sys") tells on which disks those lie that may
/// have several; of which it tells nothing, nothing is known.
std::vector<Mount> mountsOn(const Disk& disk, const std::vector<Mount>& mounts,
                            const std::string& sys);

}  // namespace providers::disk
