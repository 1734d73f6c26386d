#include <filesystem>

#include "substitute/cmpi.nsp/installation/FolderListing.h"
#include "substitute/cmpi.nsp/installation/PathForm.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;
using Kind = FolderEntry::Kind;

Kind kindOf(const fs::directory_entry& entry) {
  std::error_code error;
  if (entry.is_symlink(error)) return Kind::eLink;
  if (entry.is_regular_file(error)) return Kind::eFile;
  return entry.is_directory(error) ? Kind::eFolder : Kind::eOther;
}

}  // namespace

FolderListing listFolder(const std::string& folder) {
  FolderListing listing;
  fs::directory_iterator each(fs::u8path(folder), listing.m_error);
  for (const fs::directory_iterator end; !listing.m_error && each != end;
       each.increment(listing.m_error)) {
    const std::string name = textOf(each->path().filename());
    const std::string ending = name.empty() ? textOf(each->path().extension()) : std::string();
    listing.add({name, kindOf(*each), ending});
  }
  listing.sort();
  return listing;
}

}  // namespace cmpinsp
