#include <sys/statvfs.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "providers/disk/scratch/ScratchFile.h"
#include "providers/disk/scratch/ScratchFolderPosix.h"
#include "providers/disk/scratch/ScratchPlaces.h"

namespace providers::disk {

namespace {

std::uint64_t sizeOf(const std::string& folder) {
  struct statvfs status {};
  return statvfs(folder.c_str(), &status) == 0 ? std::uint64_t{status.f_blocks} * status.f_frsize
                                               : 0;
}

std::vector<Mount> currentMounts() {
  std::ostringstream text;
  text << std::ifstream("/proc/self/mountinfo").rdbuf();
  std::vector<Mount> mounts = parseMounts(text.str());
  for (Mount& mount : mounts)
    if (mayHaveFurtherDisks(mount)) mount.bytes = sizeOf(mount.folder);
  return mounts;
}

bool liesOn(const ScratchFolder& folder, const std::vector<Mount>& mounts) {
  const std::string id = folder.mount();
  return !id.empty() && std::any_of(mounts.begin(), mounts.end(),
                                    [&id](const Mount& mount) { return mount.id == id; });
}

}  // namespace

bool systemHasScratchFiles() { return true; }

OpenedScratch openScratch(const Disk& disk, const std::string& folder, std::uint64_t bytes) {
  const std::vector<Mount> mounts = mountsOn(disk, currentMounts(), "/sys");
  if (!folder.empty()) {
    const ScratchFolder given(folder);
    if (liesOn(given, mounts)) return given.makeFile(bytes);
    return {nullptr,
            folder + " does not lie on " + disk.name +
                " alone as far as is known, or its file system cannot be written",
            {}};
  }
  OpenedScratch opened{
      nullptr, "no file system of " + disk.name + " alone is mounted for writing", {}};
  std::vector<std::string> candidates{"/var/tmp", "/tmp"};
  for (const Mount& mount : mounts) candidates.push_back(mount.folder);
  for (const std::string& candidate : candidates) {
    const ScratchFolder place(candidate);
    if (!liesOn(place, mounts)) continue;
    opened = place.makeFile(bytes);
    if (opened.file) break;
  }
  return opened;
}

}  // namespace providers::disk
