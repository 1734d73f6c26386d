#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "substitute/cmpi.nsp/installation/FolderListing.h"

namespace cmpinsp {

namespace {

using Kind = FolderEntry::Kind;

Kind kindOf(mode_t mode) {
  if (S_ISREG(mode)) return Kind::eFile;
  if (S_ISDIR(mode)) return Kind::eFolder;
  return S_ISLNK(mode) ? Kind::eLink : Kind::eOther;
}

/// Some file systems do not tell it with the name.
Kind kindOf(DIR* folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return kindOf(static_cast<mode_t>(DTTOIF(entry.d_type)));
  struct stat status {};
  const bool isKnown = fstatat(dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0;
  return isKnown ? kindOf(status.st_mode) : Kind::eOther;
}

std::error_code lastError() { return {errno, std::generic_category()}; }

}  // namespace

FolderListing listFolder(const std::string& folder) {
  FolderListing listing;
  const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), closedir);
  if (!open) {
    listing.m_error = lastError();
    return listing;
  }
  for (errno = 0; const dirent* const entry = readdir(open.get()); errno = 0) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") listing.add({name, kindOf(open.get(), *entry), {}});
  }
  if (errno != 0) listing.m_error = lastError();
  listing.sort();
  return listing;
}

}  // namespace cmpinsp
