#include "substitute/cmpi.nsp/cache/CacheTidy.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/cache/CacheFile.h"
#include "substitute/cmpi.nsp/cache/MappedFile.h"
#include "substitute/cmpi.nsp/cache/SchemaImage.h"
#include "substitute/cmpi.nsp/installation/FolderListing.h"
#include "substitute/cmpi.nsp/installation/PathForm.h"
#include "substitute/cmpi.nsp/installation/PathRights.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

enum class CacheName { eNone, eCache, eTemporary };

/// Takes `text` off the front of `name`.
bool takeOff(std::string_view& name, std::string_view text) {
  if (name.substr(0, text.size()) != text) return false;
  name.remove_prefix(text.size());
  return true;
}

bool takeDigits(std::string_view& name, const char* digits) {
  const std::size_t count = std::min(name.find_first_not_of(digits), name.size());
  name.remove_prefix(count);
  return count > 0;
}

/// "schema-NUMBER.cache", or that with ".NUMBER.tmp" behind it.
CacheName kindOf(std::string_view name) {
  if (!takeOff(name, "schema-") || !takeDigits(name, "0123456789abcdef")) return CacheName::eNone;
  if (!takeOff(name, ".cache")) return CacheName::eNone;
  if (name.empty()) return CacheName::eCache;
  const bool isTemporary = takeOff(name, ".") && takeDigits(name, "0123456789") && name == ".tmp";
  return isTemporary ? CacheName::eTemporary : CacheName::eNone;
}

struct FoundFile {
  std::string path;
  CacheName kind = CacheName::eNone;
  std::uint64_t size = 0;
  fs::file_time_type written{};
};

/// The files in the folder that have the name of a cache; none where it cannot be listed. Their
/// sizes and times are not looked up yet.
std::vector<FoundFile> cachesIn(const std::string& folder) {
  std::vector<FoundFile> found;
  const FolderListing listing = listFolder(folder);
  for (const FolderEntry& entry : listing.entries()) {
    const CacheName kind = kindOf(entry.name);
    if (kind == CacheName::eNone || entry.kind != FolderEntry::Kind::eFile) continue;
    found.push_back({pathIn(folder, entry.name), kind});
  }
  return found;
}

/// False where they cannot be found out.
bool lookUp(FoundFile& file) {
  std::error_code unknown;
  file.size = fs::file_size(fs::u8path(file.path), unknown);
  if (!unknown) file.written = fs::last_write_time(fs::u8path(file.path), unknown);
  return !unknown;
}

/// Whether a cache was made of files of which none is left.
bool isOfNothing(const std::string& path) {
  const MappedFile mapped(path);
  return isOfNone(mapped.bytes(), [](const std::string& file) {
    std::error_code error;
    return fs::exists(fs::u8path(file), error) || error;
  });
}

void removeCache(const FoundFile& file, const char* why) {
  std::error_code error;
  if (fs::remove(fs::u8path(file.path), error)) {
    logLine(kTraceLevel, "Schema cache: " + file.path + " is removed: " + std::string(why));
  }
}

bool isLeftBehind(const FoundFile& file, const CacheLimits& limits) {
  return file.kind == CacheName::eTemporary &&
         fs::file_time_type::clock::now() - file.written > limits.oldestTemporary;
}

/// Removes those of `files` that were written longest ago until the others fit.
void fitIn(std::vector<FoundFile> files, const std::string& own, const CacheLimits& limits) {
  std::uint64_t total = 0;
  for (const FoundFile& file : files) total += file.size;
  std::sort(files.begin(), files.end(), [](const FoundFile& one, const FoundFile& other) {
    return one.written < other.written;
  });
  for (const FoundFile& file : files) {
    if (total <= limits.mostBytes) return;
    if (file.path == own || file.kind == CacheName::eTemporary) continue;
    removeCache(file, "the caches take too much room");
    total -= file.size;
  }
}

}  // namespace

void tidyCaches(const std::string& path, const CacheLimits& limits) {
  if (losesItsMachine(fs::u8path(path))) return;
  const std::string own = withoutLinks(path);
  const std::string folder = fs::u8path(own).parent_path().u8string();
  std::vector<FoundFile> files = cachesIn(folder);
  const bool isAlone = std::all_of(files.begin(), files.end(),
                                   [&](const FoundFile& file) { return file.path == own; });
  if (isAlone || !whyOthersCanChangeFolder(folder).empty()) return;
  if (files.size() > limits.mostFiles) files.resize(limits.mostFiles);
  std::vector<FoundFile> kept;
  for (FoundFile& file : files) {
    if (!lookUp(file)) continue;
    if (isLeftBehind(file, limits)) {
      removeCache(file, "a start was killed while it wrote it");
    } else if (file.kind == CacheName::eCache && file.path != own && isOfNothing(file.path)) {
      removeCache(file, "its installation is gone");
    } else {
      kept.push_back(std::move(file));
    }
  }
  fitIn(std::move(kept), own, limits);
}

}  // namespace cmpinsp
