#include "substitute/cmpi.nsp/trust/ElfNeeds.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/trust/RunPath.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

bool isMissing(const std::error_code& error) {
  return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

/// The loader searches for a name; a path it opens, with its placeholders replaced.
bool isPath(const std::string& name) { return name.find('/') != std::string::npos; }

}  // namespace

struct ElfNeeds::Search {
  const Object& object;
  const std::string& name;
  std::vector<std::string> files{};
  std::string refusal{};
  bool isCertain = false;  ///< the loader looks no further

  bool isOver() const noexcept { return isCertain || !refusal.empty(); }
};

ElfNeeds::ElfNeeds(PathRights& rights, LoaderView view)
    : m_rights(rights),
      m_view(std::move(view)),
      m_libraryFolders(libraryFoldersOf(m_view.defaultFolders)) {}

/// Breadth first like the loader's own walk: a name that was found for one library is not looked
/// for again for another.
std::string ElfNeeds::refusalOf(const std::string& library) {
  const ElfFile& file = fileAt(library);
  if (file.kind == LibraryKind::kDamaged) return library + " cannot be read: " + file.fault;
  if (file.kind != LibraryKind::kUsable) return std::string();
  Walk walk;
  walk.objects.push_back({library, &file, nullptr});
  walk.known.insert(file.name);
  for (std::size_t i = 0; i < walk.objects.size(); ++i) {
    const Object& object = walk.objects[i];
    for (const std::string& name : object.file->needed) {
      std::string refusal = refusalOfNeed(walk, object, name, false);
      if (!refusal.empty()) return refusal;
    }
    for (const std::string& name : object.file->auxiliary) {
      std::string refusal = refusalOfNeed(walk, object, name, true);
      if (!refusal.empty()) return refusal;
    }
  }
  return std::string();
}

std::string ElfNeeds::refusalOfNeed(Walk& walk, const Object& object, const std::string& name,
                                    bool mayBeMissing) {
  const bool isName = !isPath(name);
  if (isName && (walk.known.count(name) != 0 || m_view.isLoaded(name))) return std::string();
  Search search{object, name};
  searchFor(search);
  const std::string need = object.path + " needs " + name;
  if (!search.refusal.empty()) return need + ": " + search.refusal;
  if (search.files.empty()) {
    return mayBeMissing ? std::string() : need + ", which is nowhere where the loader looks";
  }
  if (isName) walk.known.insert(name);
  for (const std::string& path : search.files) {
    const std::string real = m_rights.resolve(path).path;
    const std::string origin = m_rights.resolve(fs::path(path).parent_path().string()).path;
    if (!isName && !walk.opened.emplace(origin, real).second) continue;
    const ElfFile& file = fileAt(real);
    if (search.files.size() == 1) walk.known.insert(file.name);
    walk.objects.push_back({path, &file, &object});
  }
  return std::string();
}

void ElfNeeds::searchFor(Search& search) {
  if (!isPath(search.name)) {
    searchRunPaths(search);
    if (!search.isOver()) searchSystem(search);
    return;
  }
  const std::string folder = fs::path(search.object.path).parent_path().string();
  const auto paths = expansionsOf(search.name, {folder, m_libraryFolders, m_view.platforms});
  if (paths.empty()) search.refusal = "its name stands for too many files";
  for (const std::string& path : paths) {
    if (path.front() != '/') search.refusal = "it is looked for from the current folder";
    if (!search.refusal.empty()) return;
    take(search, path);
  }
}

/// Those of the libraries that led here count for one that has none of the newer kind.
void ElfNeeds::searchRunPaths(Search& search) {
  const ElfFile& file = *search.object.file;
  if (!file.runPath) {
    for (const Object* each = &search.object; each != nullptr; each = each->neededBy) {
      if (each->file->runPathOfAll) searchRunPath(search, *each, *each->file->runPathOfAll);
      if (search.isOver()) return;
    }
    for (const std::string& folder : m_view.processFolders) {
      if (!search.refusal.empty()) return;
      searchFolder(search, folder);
    }
  }
  for (const std::string& folder : m_view.environmentFolders) {
    if (search.isOver()) return;
    searchFolders(search, {folder});
  }
  if (file.runPath && !search.isOver()) searchRunPath(search, search.object, *file.runPath);
}

void ElfNeeds::searchRunPath(Search& search, const Object& object, const std::string& runPath) {
  const std::string origin = fs::path(object.path).parent_path().string();
  for (const std::string& written : foldersIn(runPath)) {
    if (search.isOver()) return;
    const auto folders = expansionsOf(written, {origin, m_libraryFolders, m_view.platforms});
    if (folders.empty()) search.refusal = "a run path stands for too many folders";
    for (const std::string& folder : folders) {
      if (!folder.empty() && folder.front() == '/') continue;
      search.refusal = "it is looked for in " + written + ", seen from the current folder";
      return;
    }
    searchFolders(search, folders);
  }
}

void ElfNeeds::searchSystem(Search& search) {
  const std::vector<std::string> cached = m_view.cached(search.name);
  bool all = !cached.empty();
  for (const std::string& path : cached) {
    all = take(search, path) && all;
    if (!search.refusal.empty()) return;
  }
  search.isCertain = all;
  if (search.object.file->withoutDefaultFolders) return;
  for (const std::string& folder : m_view.defaultFolders) {
    if (search.isOver()) return;
    searchFolders(search, {folder});
  }
}

/// One step of the loader, which goes to one of these folders.
void ElfNeeds::searchFolders(Search& search, const std::vector<std::string>& folders) {
  bool all = !folders.empty();
  for (const std::string& folder : folders) {
    all = searchFolder(search, folder) && all;
    if (!search.refusal.empty()) return;
  }
  search.isCertain = all;
}

/// Whether a file of that name is in the folder itself. What is in its folders for certain
/// processors may be taken instead.
bool ElfNeeds::searchFolder(Search& search, const std::string& folder) {
  const ResolvedPath resolved = m_rights.resolve(folder);
  search.refusal = refusalOfFolder(resolved);
  if (!search.refusal.empty() || resolved.error) return false;
  for (const std::string& variant : variantsOf(resolved.path)) {
    search.refusal = refusalOfFolder(m_rights.resolve(variant));
    if (search.refusal.empty()) take(search, variant + "/" + search.name);
    if (!search.refusal.empty()) return false;
  }
  return take(search, folder + "/" + search.name);
}

/// Of a missing folder, whoever can make it can put a library there.
std::string ElfNeeds::refusalOfFolder(const ResolvedPath& folder) {
  if (folder.error && !isMissing(folder.error)) {
    return "what is below " + folder.path + " cannot be examined: " + systemMessage(folder.error);
  }
  return folder.linkRefusal.empty() ? m_rights.whyOthersCanChangeFolder(folder.path)
                                    : folder.linkRefusal;
}

/// Whether the loader takes that file.
bool ElfNeeds::take(Search& search, const std::string& path) {
  const ResolvedPath resolved = m_rights.resolve(path);
  if (resolved.error) {
    search.refusal = refusalOfFolder(resolved);
    return false;
  }
  search.refusal = resolved.linkRefusal.empty() ? m_rights.whyOthersCanChange(resolved.path)
                                                : resolved.linkRefusal;
  if (search.refusal.empty() && !resolved.isFile) search.refusal = path + " is no file";
  if (!search.refusal.empty()) return false;
  const ElfFile& file = fileAt(resolved.path);
  if (file.kind == LibraryKind::kDamaged) search.refusal = path + " cannot be read: " + file.fault;
  if (file.kind == LibraryKind::kDamaged || file.kind == LibraryKind::kForeign) return false;
  search.files.push_back(path);
  return true;
}

const std::vector<std::string>& ElfNeeds::variantsOf(const std::string& folder) {
  const auto [entry, isNew] = m_variants.try_emplace(folder);
  std::vector<std::string>& variants = entry->second;
  if (!isNew) return variants;
  const std::string newer = folder + "/glibc-hwcaps";
  if (!m_rights.resolve(newer).error) {
    variants.push_back(newer);
    std::error_code error;
    fs::directory_iterator each(newer, error);
    for (const fs::directory_iterator end; !error && each != end; each.increment(error)) {
      variants.push_back(each->path().string());
    }
  }
  constexpr unsigned kDepth = 4;
  addVariants(folder, kDepth, variants);
  return variants;
}

/// Older loaders go by names below each other.
void ElfNeeds::addVariants(const std::string& folder, unsigned depth,
                           std::vector<std::string>& variants) {
  if (depth == 0) return;
  for (const char* name : {"tls", "haswell", "xeon_phi", "avx512_1", "x86_64"}) {
    const std::string variant = folder + "/" + name;
    if (m_rights.resolve(variant).error) continue;
    variants.push_back(variant);
    addVariants(variant, depth - 1, variants);
  }
}

const ElfFile& ElfNeeds::fileAt(const std::string& path) {
  const auto known = m_files.find(path);
  if (known != m_files.end()) return known->second;
  return m_files.emplace(path, readElf(*bytesOfFile(path))).first->second;
}

}  // namespace cmpinsp
