#pragma once

#include <cstdint>
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
  /// How large the file system says that it is, where its type makes that matter; 0 where it does
  /// not say.
  std::uint64_t bytes = 0;
};

/// What /proc/self/mountinfo says.
std::vector<Mount> parseMounts(const std::string& text);

/// Whether `bytes` of the mount has to be known: its number is that of one disk, and there may be
/// others of which nothing but its size speaks.
bool mayHaveFurtherDisks(const Mount& mount);

/// Where a file on that disk, and no other, can be made, the most specific places last; only file
/// systems that can be written. `sys` ("/sys") tells on which disks those lie that may
/// have several; of which it tells nothing, nothing is known.
std::vector<Mount> mountsOn(const Disk& disk, const std::vector<Mount>& mounts,
                            const std::string& sys);

}  // namespace providers::disk
