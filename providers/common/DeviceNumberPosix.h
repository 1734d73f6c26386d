#pragma once

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <string>

namespace providers {

inline std::string deviceNumber(dev_t device) {
  return std::to_string(major(device)) + ":" + std::to_string(minor(device));
}

/// Why the open file is not the block device of that number; nothing where it is, or where none is
/// wanted. In a container /dev may give a disk the name that another one has in /sys, and the
/// findings of the one would be told of the other.
inline std::string whyAnotherDevice(int file, const std::string& node, const std::string& number) {
  if (number.empty()) return {};
  struct stat status {};
  const bool same = fstat(file, &status) == 0 && S_ISBLK(status.st_mode) &&
                    deviceNumber(status.st_rdev) == number;
  return same ? ""
              : node + " does not lead to the disk of that name, whose device number is " + number +
                    "; inside a container, hand it in by its own name";
}

}  // namespace providers
